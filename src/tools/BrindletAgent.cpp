// brindlet-agent: lets an automated agent plan with Brindlet through JSON lines on standard
// input and output. It opens the desktop app's own state file and takes part in its revision
// checks, so that agent and app can't overwrite each other's changes.
#include <exception>
#include <iostream>
#include <optional>
#include <string_view>

#include "agent/AgentCommandService.h"
#include "agent/AgentLineTransport.h"
#include "app/PlatformFolders.h"
#include "flow/TaskSessionEngine.h"
#include "persistence/LocalStore.h"
#include "persistence/TaskStore.h"
#include "review/RecommendationEngine.h"
#include "support/BrindletError.h"
#include "support/Calendar.h"
#include "support/Clock.h"

namespace {

constexpr std::string_view kHelp =
    R"(Usage: brindlet-agent [--help]

Lets an automated agent read and change your Brindlet plan. Reads one JSON command
envelope per line on standard input and writes one JSON response envelope per line on
standard output, until the input ends. Works on the same data as the Brindlet app.

A command envelope:
  {"version":1,"command":"tasks.create","expectedRevision":4,
   "payload":{"title":"Draft the report","estimated_minutes":45}}

Every command that changes the plan needs "expectedRevision", the revision of the last
response; a stale one is refused with "revision_conflict" and the current revision.
Tasks with website blocking or an active reminder, and approving or dismissing a
recommendation, are left to the app.

Commands:
)";

}  // namespace

int main(int argc, char** argv) {
  using namespace brindlet;
  if (argc == 2 && std::string_view(argv[1]) == "--help") {
    std::cout << kHelp;
    for (const std::string_view command : AgentCommandService::kCommands) {
      std::cout << "  " << command << '\n';
    }
    return 0;
  }
  if (argc > 1) {
    std::cerr << "brindlet-agent takes no arguments but --help.\n";
    return 2;
  }

  const LocalStore local(PlatformFolders::current().stateFile());
  std::optional<TaskStore> store;
  try {
    // Held until the task store has loaded it, which then reads nothing.
    const SharedLoadedState migrated = local.migrateToCurrentSchema();
    store.emplace(local);
  } catch (...) {
    // Unlike the app, which starts in recovery mode, an agent gets no answers at all rather
    // than answers from a plan that isn't the user's.
    std::cerr << "Your Brindlet data could not be opened. The original file was left untouched: "
              << currentErrorText() << '\n';
    return 1;
  }

  const Calendar calendar = Calendar::current();
  TaskSessionEngine sessions(*store, calendar);
  RecommendationEngine recommendations(*store);
  // An agent process can't show the approval dialog: blocked tasks, tasks with reminders and
  // approvals are refused with answers that send the user to the app.
  AgentCommandService service(*store, sessions, recommendations, calendar,
                              {.approvalAuthority = ApprovalAuthority::untrustedAgent});
  const SystemClock clock;
  std::ios::sync_with_stdio(false);
  AgentLineTransport::serve(service, std::cin, std::cout, clock);
  return 0;
}
