#pragma once

// Where the installed pieces of Pomvar find one another; both programs and the tests agree on
// these. The install tree is <prefix>/bin/pomvar beside <prefix>/libexec/pomvar/, and the build
// tree mirrors it.
namespace pomvar::paths {

// The version of the installed programs, one line, beside the runtime server.
inline constexpr const char* versionFile = "version";
// The front end, from the runtime server's folder.
inline constexpr const char* frontEndFromServerDir = "../../bin/pomvar";

} // namespace pomvar::paths
