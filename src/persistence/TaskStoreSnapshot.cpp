#include "persistence/TaskStoreSnapshot.h"

namespace brindlet {

TaskStoreSnapshot::TaskStoreSnapshot(std::shared_ptr<const PersistedState> state)
    : revision_(state->revision), state_(std::move(state)) {}

TaskStoreSnapshot::TaskStoreSnapshot(PersistedState state)
    : TaskStoreSnapshot(std::make_shared<const PersistedState>(std::move(state))) {}

}  // namespace brindlet
