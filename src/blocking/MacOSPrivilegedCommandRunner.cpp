#include "blocking/MacOSPrivilegedCommandRunner.h"

#include <unicode/locid.h>
#include <unicode/unistr.h>

#include "blocking/BlockingError.h"
#include "blocking/ShellCommand.h"
#include "support/BrindletError.h"
#include "support/ChildProcess.h"

namespace brindlet {
namespace {

// osascript reports a dismissed dialog only in words ("User canceled."), in any case.
bool speaksOfCancelling(std::string_view text) {
  icu::UnicodeString lowered = icu::UnicodeString::fromUTF8(
      icu::StringPiece(text.data(), static_cast<std::int32_t>(text.size())));
  lowered.toLower(icu::Locale::getDefault());
  return lowered.indexOf(icu::UnicodeString(u"cancel")) >= 0;
}

}  // namespace

std::string MacOSPrivilegedCommandRunner::commandPlan(std::string_view replacementPath,
                                                      std::string_view destinationPath) {
  const std::string source = shellQuote(replacementPath);
  const std::string destination = shellQuote(destinationPath);
  return "/bin/cp " + source + " " + destination + " && /usr/sbin/chown root:wheel " + destination +
         " && /bin/chmod 644 " + destination +
         " && /usr/bin/dscacheutil -flushcache && /usr/bin/killall -HUP mDNSResponder";
}

std::string MacOSPrivilegedCommandRunner::shellQuote(std::string_view text) {
  return shellQuoted(text);
}

std::string MacOSPrivilegedCommandRunner::appleScriptEscaped(std::string_view text) {
  // Backslashes first: the ones added before double quotes must not be doubled again.
  std::string escaped;
  escaped.reserve(text.size());
  for (const char c : text) {
    if (c == '\\') {
      escaped += "\\\\";
    } else if (c == '"') {
      escaped += "\\\"";
    } else {
      escaped += c;
    }
  }
  return escaped;
}

void MacOSPrivilegedCommandRunner::checkOutcome(int exitStatus, std::string_view errorBytes) {
  if (exitStatus == 0) return;
  const std::string text = standardErrorText(errorBytes);
  if (speaksOfCancelling(text)) throw BlockingError::authorizationCancelled();
  throw BlockingError::writeFailed(text);
}

void MacOSPrivilegedCommandRunner::runAuthorized(const std::string& command) const {
  const std::string script =
      "do shell script \"" + appleScriptEscaped(command) + "\" with administrator privileges";
  ChildProcessResult result;
  try {
    result = runChildProcess(osascriptPath_, {"-e", script});
  } catch (const SystemError& error) {
    throw BlockingError::writeFailed(systemErrorText(error.errorNumber()));
  }
  checkOutcome(result.exitStatus, result.standardError);
}

void MacOSPrivilegedCommandRunner::replace(const std::filesystem::path& source,
                                           const std::filesystem::path& destination) {
  runAuthorized(commandPlan(source.string(), destination.string()));
}

}  // namespace brindlet
