#pragma once

#include <filesystem>

namespace brindlet::testing {

/// Points the user's folders, the session bus and the platform of this test process away from
/// anything real: a home folder of its own under the temporary folder, no session bus, the
/// offscreen platform, UTC and US English. Returns the home folder, for the caller to remove.
std::filesystem::path usePrivateSession();

}  // namespace brindlet::testing
