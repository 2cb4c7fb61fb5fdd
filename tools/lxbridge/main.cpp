// The main function of the `lxbridge` command.
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <string>

#include "kit/base/platform.h"
#include "tools/lxbridge/commands.h"
#include "tools/lxbridge/field_listing.h"
#include "tools/lxbridge/options.h"
#include "tools/lxbridge/output.h"
#include "tools/lxbridge/system.h"
#include "tools/lxbridge/worker_process.h"

namespace command = lxbridge::command;

namespace {

int Run(int argc, char** argv) {
  command::Options options;
  std::string error;
  if (!command::ParseOptions(argc, argv, &options, &error)) {
    command::ReportLines(error, "Try 'lxbridge --help' for more information.");
    return command::kExitUsage;
  }
  command::SettleTerminal(&options);
  command::ColourMessages(command::ColoursMessages(options));
  switch (options.action) {
    case command::Action::kHelp:
      return command::WriteResult(command::HelpText(options.helpTopic)) ? command::kExitOk : command::kExitCutOff;
    case command::Action::kVersion:
      return command::WriteResult(command::VersionText()) ? command::kExitOk : command::kExitCutOff;
    case command::Action::kFields:
      if (options.files.empty() && options.filesFrom == nullptr) {
        return command::WriteResult(command::KnownFieldListing(options)) ? command::kExitOk : command::kExitCutOff;
      }
      break;
    case command::Action::kPool:
    case command::Action::kXmp:
      break;
  }
  return command::RunFiles(options);
}

}  // namespace

int main(int argc, char** argv) {
  command::OnNoMemoryToThrow([] {
    command::ReportWithoutMemory("", command::kNoMemoryMessage);
    std::_Exit(command::kExitCutOff);
  });
  command::OpenClosedStandardStreams();
  command::BecomeWorkerIfStartedAsOne();
  (void)LxPlatformArguments(&argc, &argv);
  LxPlatformSetTextMode(stdout, false);
  try {
    return Run(argc, argv);
  } catch (const std::exception& error) {
    // Not the fault of a file: no memory for the command itself, or incompatible libraries.
    command::ReportWithoutMemory("", command::MessageOf(error));
    return command::kExitCutOff;
  }
}
