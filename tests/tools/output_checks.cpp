#include "tests/tools/output_checks.h"

#include <expat.h>

#include <memory>
#include <set>
#include <string_view>

#include "clients/xmp/xmp_meta.h"
#include "host/include/lxbridge/xmp.hpp"
#include "tests/tools/run_command.h"

namespace lxtest {

namespace {

using testing::AssertionFailure;
using testing::AssertionResult;
using testing::AssertionSuccess;

// What String() of the writer makes of a text: itself, or its bytes in hex.
std::string Decoded(const OrderedJson& text) {
  if (text.is_string()) return text.get<std::string>();
  return AsText(Hex(text.at("hex").get<std::string>()));
}

// What depends on the file: values in hex of their length, and children where there are any. (The keys of every item
// are the same, and stand in the goldens.)
std::string ItemFault(const OrderedJson& item) {
  if (!item["value"].is_null()) {
    const std::string value = item["value"].get<std::string>();
    if (value.find_first_not_of("0123456789abcdef") != std::string::npos) return "a value that is not hex: " + value;
    if (value.size() != 2 * item["length"].get<std::size_t>()) return "a value of another length: " + item.dump();
  }
  if (Decoded(item["namespace"]).empty()) return "an item of no namespace: " + item.dump();
  if (!item.contains("children")) return "";
  if (item["children"].empty()) return "children without one";
  for (const OrderedJson& child : item["children"]) {
    if (const std::string fault = ItemFault(child); !fault.empty()) return fault;
  }
  return "";
}

// The prefix of every key that is a name, and of nothing else.
void CollectPrefixes(const OrderedJson& node, std::set<std::string>* prefixes) {
  for (const auto& [key, value] : node.items()) {
    if (const std::size_t colon = key.find(':'); node.is_object() && colon != 0 && colon != std::string::npos) {
      prefixes->insert(key.substr(0, colon));
    }
    if (value.is_structured()) CollectPrefixes(value, prefixes);
  }
}

std::string XmpFault(const OrderedJson& line) {
  if (line.size() != 3 || !line.at("properties").is_array()) return "a line with other keys";
  std::set<std::string> prefixes, explained;
  for (const OrderedJson& property : line["properties"]) {
    prefixes.insert(property.at("prefix").get<std::string>());
    CollectPrefixes(property.at("value"), &prefixes);
    if (line.at("namespaces").value(property["prefix"].get<std::string>(), "") != property["schema"])
      return "a prefix of another namespace";
  }
  for (const auto& [prefix, uri] : line.at("namespaces").items()) explained.insert(prefix);
  if (prefixes != explained) return "prefixes that the line does not explain, or does not have";
  for (const OrderedJson& property : line["properties"]) {
    for (const char* key : {"schema", "prefix", "name"}) {
      if (property.at(key).get<std::string>().empty()) return std::string(key) + " is no text";
    }
    if (property.size() != 4 || property.at("value").is_null()) return "a property with other keys";
  }
  return "";
}

std::string PoolFault(const OrderedJson& line) {
  if (line.size() != 5 || !line.at("status").is_number_integer()) return "a line with other keys";
  for (const char* key : {"colourModel", "orientation", "fileKind", "compression"}) {
    if (!line["attributes"].at(key).is_string()) return std::string(key) + " has no name";
  }
  for (const OrderedJson& item : line.at("items")) {
    if (const std::string fault = ItemFault(item); !fault.empty()) return fault;
  }
  return "";
}

template <typename Check>
AssertionResult IsLines(const std::string& output, const std::vector<std::string>& files, Check check) {
  const std::vector<std::string> lines = Lines(output);
  if (lines.size() != files.size() || (!output.empty() && output.back() != '\n')) {
    return AssertionFailure() << lines.size() << " lines for " << files.size() << " files";
  }
  for (std::size_t i = 0; i < files.size(); ++i) {
    try {
      const OrderedJson line = OrderedJson::parse(lines[i]);
      std::string fault = check(line);
      if (fault.empty() && Decoded(line["file"]) != files[i]) fault = "the name is " + line["file"].dump();
      if (!fault.empty()) return AssertionFailure() << files[i] << ": " << fault;
    } catch (const OrderedJson::exception& error) {
      return AssertionFailure() << files[i] << ": " << error.what();
    }
  }
  return AssertionSuccess();
}

std::string PacketFault(const std::string& packet) {
  if (!packet.starts_with("<?xpacket begin=")) return "no header";
  const std::vector<std::string> lines = Lines(packet);
  if (!lines.back().starts_with("<?xpacket end=")) return "no trailer on a line of its own";
  if (lines.size() < 2 || !lines[1].starts_with("<x:xmpmeta ")) return "no x:xmpmeta";
  const std::unique_ptr<XML_ParserStruct, decltype(&XML_ParserFree)> parser(XML_ParserCreate("UTF-8"), XML_ParserFree);
  if (XML_Parse(parser.get(), packet.data(), static_cast<int>(packet.size()), 1) != XML_STATUS_OK) {
    return std::string(XML_ErrorString(XML_GetErrorCode(parser.get()))) + " in line " +
           std::to_string(XML_GetCurrentLineNumber(parser.get()));
  }
  return "";
}

std::string Qualified(const lxbridge::XmpNode& node) {
  return node.prefix + ":" + node.name;
}

OrderedJson NodeJson(const lxbridge::XmpNode& node) {
  OrderedJson bare = node.value;
  if (node.IsArray()) {
    OrderedJson items = OrderedJson::array();
    for (const lxbridge::XmpNode& item : node.children) items.push_back(NodeJson(item));
    bare = {{node.IsAlternative() ? "alt" : node.IsOrdered() ? "seq" : "bag", items}};
  } else if (node.IsStruct()) {
    OrderedJson fields = OrderedJson::object();
    for (const lxbridge::XmpNode& field : node.children) fields[Qualified(field)] = NodeJson(field);
    bare = {{"struct", fields}};
  }
  if (node.qualifiers.empty()) return bare;
  OrderedJson qualifiers = OrderedJson::object();
  for (const lxbridge::XmpNode& qualifier : node.qualifiers) qualifiers[Qualified(qualifier)] = NodeJson(qualifier);
  return {{"value", bare}, {"qualifiers", qualifiers}};
}

}  // namespace

AssertionResult IsXmpJson(const std::string& output, const std::vector<std::string>& files) {
  return IsLines(output, files, XmpFault);
}

AssertionResult IsPoolJson(const std::string& output, const std::vector<std::string>& files) {
  return IsLines(output, files, PoolFault);
}

std::vector<std::string> Packets(const std::string& output) {
  std::vector<std::string> packets;
  std::size_t from = 0;
  while (from < output.size()) {
    const std::size_t trailer = output.find("<?xpacket end=", from);
    const std::size_t end = trailer == std::string::npos ? trailer : output.find('\n', trailer);
    packets.push_back(output.substr(from, end == std::string::npos ? end : end + 1 - from));
    from = end == std::string::npos ? output.size() : end + 1;
  }
  return packets;
}

AssertionResult IsPackets(const std::string& output, std::size_t count) {
  const std::vector<std::string> packets = Packets(output);
  if (packets.size() != count) return AssertionFailure() << packets.size() << " packets instead of " << count;
  if (!output.empty() && output.back() != '\n') return AssertionFailure() << "the last line has no end";
  for (const std::string& packet : packets) {
    if (const std::string fault = PacketFault(packet); !fault.empty())
      return AssertionFailure() << fault << "\n" << packet;
  }
  return AssertionSuccess();
}

OrderedJson PropertiesOfPacket(const std::string& packet) {
  const lxbridge::HostSession session;
  XMPMetaHolder object;
  object.ParseFromBuffer(reinterpret_cast<const std::uint8_t*>(packet.data()), static_cast<std::int32_t>(packet.size()),
                         0);
  OrderedJson properties = OrderedJson::array();
  for (const lxbridge::XmpNode& node : lxbridge::XmpView(object.Meta()).Properties()) {
    properties.push_back(
        {{"schema", node.namespaceUri}, {"prefix", node.prefix}, {"name", node.name}, {"value", NodeJson(node)}});
  }
  return properties;
}

std::string RenamedInOutput(const std::string& output, const std::string& from, const std::string& to) {
  for (const std::string before : {"{\"file\": \"", ""}) {  // A line of JSON; the head of a tree.
    if (output.starts_with(before + from)) return before + to + output.substr(before.size() + from.size());
  }
  return output;
}

}  // namespace lxtest
