// Compares the XMP toolkit with the XML parser that it uses, and measures how it scales with the object. In one run:
//   Parse            a packet of about 10 KB into a new object
//   BareExpat        the same bytes through expat with empty handlers
//   SetFindDelete/N  one property set, found and deleted in an object of N properties
// Repetitions are interleaved; prints the medians and their ratios.
//
//   toolkit_bench [Google Benchmark's options]
//
// The toolkit is called through its boundary, as by its clients.
#include <benchmark/benchmark.h>
#include <expat.h>

#include <cstdio>
#include <map>
#include <string>
#include <vector>

#include "bench/medians.h"
#include "clients/broker/broker_client.h"
#include "clients/xmp/xmp_client.h"
#include "clients/xmp/xmp_meta.h"

namespace {

constexpr char kSchema[] = "http://ns.adobe.com/exif/1.0/";

// A typical packet of an editor: simple properties, language alternatives, bags, a history of structs.
std::string TypicalPacket() {
  std::string packet =
      "<?xpacket begin=\"\xEF\xBB\xBF\" id=\"W5M0MpCehiHzreSzNTczkc9d\"?><x:xmpmeta xmlns:x=\"adobe:ns:meta/\">\n"
      " <rdf:RDF xmlns:rdf=\"http://www.w3.org/1999/02/22-rdf-syntax-ns#\">\n"
      "  <rdf:Description rdf:about=\"\" xmlns:dc=\"http://purl.org/dc/elements/1.1/\"\n"
      "    xmlns:exif=\"http://ns.adobe.com/exif/1.0/\" xmlns:xmpMM=\"http://ns.adobe.com/xap/1.0/mm/\"\n"
      "    xmlns:stEvt=\"http://ns.adobe.com/xap/1.0/sType/ResourceEvent#\">\n";
  for (int i = 0; i < 80; ++i) {
    const std::string name = "exif:Property" + std::to_string(i);
    packet += "   <" + name + ">" + std::to_string(i * 7919) + "/1000</" + name + ">\n";
  }
  packet += "   <dc:title><rdf:Alt><rdf:li xml:lang=\"x-default\">The harbour at dusk</rdf:li></rdf:Alt></dc:title>\n";
  packet += "   <dc:subject><rdf:Bag>\n";
  for (int i = 0; i < 40; ++i) packet += "    <rdf:li>keyword " + std::to_string(i) + "</rdf:li>\n";
  packet += "   </rdf:Bag></dc:subject>\n   <xmpMM:History><rdf:Seq>\n";
  for (int i = 0; i < 26; ++i) {
    packet +=
        "    <rdf:li rdf:parseType=\"Resource\"><stEvt:action>saved</stEvt:action><stEvt:when>2024-06-21T18:30:05Z"
        "</stEvt:when><stEvt:changed>/metadata</stEvt:changed></rdf:li>\n";
  }
  return packet +
         "   </rdf:Seq></xmpMM:History>\n  </rdf:Description>\n </rdf:RDF>\n</x:xmpmeta>\n<?xpacket end=\"w\"?>";
}

void Parse(benchmark::State& state, const std::string& packet) {
  for (auto _ : state) {
    XMPMetaHolder xmp;
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(packet.data());
    xmp.ParseFromBuffer(bytes, static_cast<std::int32_t>(packet.size()), 0);
    benchmark::DoNotOptimize(xmp.Meta());
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(packet.size()));
}

void BareExpat(benchmark::State& state, const std::string& packet) {
  for (auto _ : state) {
    XML_Parser parser = XML_ParserCreateNS(nullptr, ' ');
    XML_SetElementHandler(
        parser, [](void*, const char*, const char**) {}, [](void*, const char*) {});
    XML_SetCharacterDataHandler(parser, [](void*, const char*, int) {});
    if (XML_Parse(parser, packet.data(), static_cast<int>(packet.size()), 1) != XML_STATUS_OK) {
      state.SkipWithError("the packet does not parse");
    }
    XML_ParserFree(parser);
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(packet.size()));
}

void SetFindDelete(benchmark::State& state, int properties) {
  XMPMetaHolder xmp;
  std::vector<std::string> names;
  for (int i = 0; i < properties; ++i) {
    names.push_back("Property" + std::to_string(i));
    xmp.SetProperty(kSchema, names.back().c_str(), "1/250");
  }
  std::size_t next = 0;
  for (auto _ : state) {
    const char* name = names[next].c_str();
    next = (next + 1) % names.size();
    xmp.DeleteProperty(kSchema, name);
    xmp.SetProperty(kSchema, name, "1/250");
    benchmark::DoNotOptimize(xmp.DoesPropertyExist(kSchema, name));
  }
}

}  // namespace

int main(int argc, char** argv) {
  std::vector<char*> arguments = lxbench::WithRepetitions(argc, argv);
  int count = static_cast<int>(arguments.size());
  const TALLookupProc lookup = TALOrdinal5();
  if (!TAL_T_NMT::StartBrokerClient(lookup) || !StartXMPClient(lookup)) return 1;

  const std::string packet = TypicalPacket();
  benchmark::RegisterBenchmark("Parse", Parse, packet)->Unit(benchmark::kMicrosecond);
  benchmark::RegisterBenchmark("BareExpat", BareExpat, packet)->Unit(benchmark::kMicrosecond);
  benchmark::RegisterBenchmark("SetFindDelete10", SetFindDelete, 10);
  benchmark::RegisterBenchmark("SetFindDelete1000", SetFindDelete, 1000);
  benchmark::Initialize(&count, arguments.data());
  if (benchmark::ReportUnrecognizedArguments(count, arguments.data())) return 1;
  lxbench::MedianReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  std::printf("\npacket of %zu bytes\n", packet.size());
  reporter.PrintRatio("Parse", "BareExpat", "us", 1);
  reporter.PrintRatio("SetFindDelete1000", "SetFindDelete10", "ns", 1);
  StopXMPClient();
  TAL_T_NMT::ShutDownBrokerClient();
  return 0;
}
