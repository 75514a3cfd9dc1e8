// The fuzzer's seeds and finds for records from other devices, replayed: each decodes to a
// record or is refused with a sync error, and nothing else happens.
#include <gtest/gtest.h>

#include "TempDir.h"
#include "sync/SyncModelCodec.h"
#include "sync/SyncModelError.h"

namespace brindlet {
namespace {

template <typename Decode>
void expectRecordOrRefusal(const std::string& bytes, Decode decode, const std::string& name) {
  try {
    (void)decode(bytes);
  } catch (const SyncModelError&) {
  } catch (...) {
    ADD_FAILURE() << name << ": a failure other than SyncModelError";
  }
}

TEST(SyncPayloadCorpusTest, EverySeedDecodesOrIsRefusedAsASyncError) {
  const auto files = testing::filesIn(testing::testDataFolder() / "fuzz" / "sync_payload");
  ASSERT_FALSE(files.empty());
  for (const auto& file : files) {
    const std::string bytes = testing::readBytes(file);
    const std::string name = file.filename().string();
    expectRecordOrRefusal(bytes, SyncModelCodec::decodeSessionIntent, name);
    expectRecordOrRefusal(bytes, SyncModelCodec::decodeDevice, name);
    expectRecordOrRefusal(bytes, SyncModelCodec::decodeAcknowledgement, name);
    expectRecordOrRefusal(bytes, SyncModelCodec::decodeRestrictionProfile, name);
  }
}

}  // namespace
}  // namespace brindlet
