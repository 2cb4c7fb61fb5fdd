// Whether what the command printed is what it promises, whatever the files hold.
#ifndef LXBRIDGE_TESTS_TOOLS_OUTPUT_CHECKS_H_
#define LXBRIDGE_TESTS_TOOLS_OUTPUT_CHECKS_H_

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace lxtest {

using OrderedJson = nlohmann::ordered_json;

// The four forms of output, as arguments in front of the files.
inline const std::vector<std::vector<std::string>> kForms = {{"xmp", "--format", "rdf"},
                                                             {"xmp", "--format", "json"},
                                                             {"pool", "--format", "text"},
                                                             {"pool", "--format", "json"}};

// One valid line of JSON for each of these files, in this order, with all the keys in theirs and values of their kinds.
[[nodiscard]] testing::AssertionResult IsXmpJson(const std::string& output, const std::vector<std::string>& files);
[[nodiscard]] testing::AssertionResult IsPoolJson(const std::string& output, const std::vector<std::string>& files);

// So many whole packets, one behind the other, each well-formed.
[[nodiscard]] testing::AssertionResult IsPackets(const std::string& output, std::size_t count);
// The packets of the output, each with its line end.
[[nodiscard]] std::vector<std::string> Packets(const std::string& output);

// The "properties" that `xmp --format json` would print of the object that the packet parses to.
[[nodiscard]] OrderedJson PropertiesOfPacket(const std::string& packet);

// The output of one file as if the file had been given by another name.
[[nodiscard]] std::string RenamedInOutput(const std::string& output, const std::string& from, const std::string& to);

}  // namespace lxtest

#endif  // LXBRIDGE_TESTS_TOOLS_OUTPUT_CHECKS_H_
