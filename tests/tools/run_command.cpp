#include "tests/tools/run_command.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace lxtest {

namespace {

[[noreturn]] void BeProgram(const std::string& program, const std::vector<std::string>& arguments,
                            const Surroundings& surroundings, const std::string& out, const std::string& err) {
  const auto become = [](int descriptor, int wanted) {
    if (descriptor < 0 || ::dup2(descriptor, wanted) < 0) ::_exit(126);
    if (descriptor != wanted) ::close(descriptor);
  };
  if (surroundings.inputIsPipe) {
    int ends[2];
    if (::pipe(ends) != 0) ::_exit(126);
    if (::fork() == 0) {  // A process of its own feeds the pipe, as large as the file may be.
      ::close(ends[0]);
      const Bytes bytes = ReadWholeFile(surroundings.input);
      if (::write(ends[1], bytes.data(), bytes.size()) < 0) ::_exit(1);
      ::_exit(0);
    }
    ::close(ends[1]);
    become(ends[0], 0);
  } else {
    become(::open(surroundings.input.c_str(), O_RDONLY), 0);
  }
  if (surroundings.outputIsClosedPipe) {
    int ends[2];
    if (::pipe(ends) != 0) ::_exit(126);
    ::close(ends[0]);
    become(ends[1], 1);
  } else {
    become(::open(out.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600), 1);
  }
  become(::open(err.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600), 2);
  ::signal(SIGPIPE, surroundings.ignoresBrokenPipe ? SIG_IGN : SIG_DFL);
  ::signal(SIGINT, SIG_DFL);  // Which is ignored where the tests run in the background.
  if (!surroundings.folder.empty() && ::chdir(surroundings.folder.c_str()) != 0) ::_exit(126);
  ::setenv("TZ", "Asia/Kolkata", 1);
  for (const std::string& variable : surroundings.environment) ::putenv(const_cast<char*>(variable.c_str()));
  ::alarm(60);  // A program that waits for ever is a failed test, not a test that waits for ever.
  constexpr uid_t kNobody = 65534;
  if (surroundings.asNobody && ::geteuid() == 0 && ::setuid(kNobody) != 0) ::_exit(126);
  std::vector<char*> argv = {const_cast<char*>(program.c_str())};
  for (const std::string& argument : arguments) argv.push_back(const_cast<char*>(argument.c_str()));
  argv.push_back(nullptr);
  ::execv(program.c_str(), argv.data());
  ::_exit(127);
}

}  // namespace

Outcome RunProgram(const std::string& program, const std::vector<std::string>& arguments,
                   const Surroundings& surroundings) {
  const TempFolder folder;
  const std::string out = surroundings.output.empty() ? folder.path() + "/out" : surroundings.output;
  const std::string err = folder.path() + "/err";
  const pid_t child = ::fork();
  if (child == 0) BeProgram(program, arguments, surroundings, out, err);
  Outcome outcome;
  int ended = 0;
  if (child < 0 || ::waitpid(child, &ended, 0) != child) {
    ADD_FAILURE() << "cannot run " << program;
    return outcome;
  }
  if (WIFEXITED(ended)) outcome.status = WEXITSTATUS(ended);
  if (WIFSIGNALED(ended)) outcome.signal = WTERMSIG(ended);
  if (surroundings.output.empty() && !surroundings.outputIsClosedPipe) outcome.out = AsText(ReadWholeFile(out));
  outcome.err = AsText(ReadWholeFile(err));
  return outcome;
}

Outcome Lxbridge(const std::vector<std::string>& arguments, const Surroundings& surroundings) {
  const bool preloads = std::any_of(surroundings.environment.begin(), surroundings.environment.end(),
                                    [](const std::string& variable) { return variable.starts_with("LD_PRELOAD="); });
  return RunProgram(preloads ? LX_SHARED_COMMAND : LX_COMMAND, arguments, surroundings);
}

std::vector<std::string> With(std::vector<std::string> form, const std::vector<std::string>& files) {
  form.insert(form.end(), files.begin(), files.end());
  return form;
}

std::string WithoutPacketNote(std::string messages) {
  for (std::size_t at; (at = messages.find(kSeveralPackets)) != std::string::npos;) {
    messages.erase(at, std::string_view(kSeveralPackets).size());
  }
  return messages;
}

std::vector<std::string> Shim(std::vector<std::string> variables) {
  variables.push_back("LD_PRELOAD=" LX_PRELOADED);
  variables.push_back("ASAN_OPTIONS=detect_leaks=0");  // The shell's are not ours.
  return variables;
}

std::string AsText(const Bytes& bytes) {
  return std::string(bytes.begin(), bytes.end());
}

std::vector<std::string> Lines(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

TempFolder::TempFolder() {
  path_ = (std::filesystem::temp_directory_path() / "lxtest-XXXXXX").string();
  if (::mkdtemp(path_.data()) == nullptr) ADD_FAILURE() << "cannot make " << path_;
}

TempFolder::~TempFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

std::string TempFolder::Add(const std::string& name, const Bytes& bytes) const {
  const std::string path = path_ + "/" + name;
  std::ofstream file(path, std::ios::binary);
  file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
  if (!file.flush()) ADD_FAILURE() << "cannot write " << path;
  return path;
}

}  // namespace lxtest
