// Measures the exchange reader beside a plain pass of expat over the same bytes.
// Both read from memory; expat only counts tags, the reader builds the tree of each element.
// Leans on Google Benchmark and expat.
#include <benchmark/benchmark.h>
#include <expat.h>

#include <memory>
#include <random>
#include <string>

#include "Library/xml/xmlparser.h"

namespace {

using namespace clxml;

enum Layout { Indented, Compact, References, LongTexts };

std::string Number (std::mt19937& random, double range) {
  return std::to_string (std::uniform_real_distribution (0.0, range) (random)) + "1234567";
}

// Some ten megabytes of points as a field application writes them, or in a harder layout.
std::string Exchange (Layout layout) {
  std::mt19937 random (1);
  const std::string end = layout == Compact ? "" : "\n    ";
  const std::string code = layout == References ? "A&amp;B &lt;1&gt;" : "FENCE 12";
  const std::string note = layout == LongTexts ? std::string (8000, 'n') : "Corner near the road";
  std::string text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<Job version=\"1140\">\n";
  for (int i = 0; text.size () < (10u << 20); i++) {
    text += "  <DATABASE_PointRecord rec=\"db_Observation\" ID=\"0x" +
            std::to_string (10000000 + i) + "\" TimeStamp=\"936000000\">" + end + "<PointName>" +
            std::to_string (i) + "</PointName>" + end +
            "<PointMethod>DBENTITY_PointKeyedIn</PointMethod>" + end + "<Code>" + code + "</Code>" +
            end + "<Grid>" + end + "  <North>" + Number (random, 1e6) + "</North>" + end +
            "  <East>" + Number (random, 1e6) + "</East>" + end + "  <Elev>" +
            Number (random, 1e3) + "</Elev>" + end + "</Grid>" + end + "<TargetHeight/>" + end +
            "<Note>" + note + "</Note>" + end + "</DATABASE_PointRecord>";
    // The reader takes lines in pieces that must not part a reference.
    if (layout != Compact || i % 20 == 0) text += "\n";
  }
  return text + "</Job>\n";
}

void Reader (benchmark::State& state) {
  const std::string text = Exchange (static_cast<Layout> (state.range (0)));
  for (auto _ : state) {
    xml_parser parser;
    xml_tree tree;
    if (!parser.Open (std::make_unique<xml_memory> (text))) state.SkipWithError ("not opened");
    parser.EnterLevel (1);
    while (const xml_element* element = parser.NextElement (tree))
      benchmark::DoNotOptimize (element);
    parser.LeaveLevel (1);
    if (!parser.Close ()) state.SkipWithError ("no clean end");
  }
  state.SetBytesProcessed (static_cast<int64_t> (state.iterations () * text.size ()));
}

void Expat (benchmark::State& state) {
  const std::string text = Exchange (static_cast<Layout> (state.range (0)));
  for (auto _ : state) {
    XML_Parser parser = XML_ParserCreate (nullptr);
    std::size_t count = 0;
    XML_SetUserData (parser, &count);
    XML_SetElementHandler (
        parser, [] (void* n, const char*, const char**) { ++*static_cast<std::size_t*> (n); },
        [] (void*, const char*) {});
    XML_SetCharacterDataHandler (parser, [] (void*, const char*, int) {});
    // In the blocks that the reader takes.
    for (std::size_t at = 0; at < text.size (); at += xml_sizes ().block) {
      const std::size_t n = std::min (text.size () - at, xml_sizes ().block);
      if (!XML_Parse (parser, text.data () + at, static_cast<int> (n), at + n == text.size ()))
        state.SkipWithError ("not parsed");
    }
    benchmark::DoNotOptimize (count);
    XML_ParserFree (parser);
  }
  state.SetBytesProcessed (static_cast<int64_t> (state.iterations () * text.size ()));
}

void Layouts (benchmark::internal::Benchmark* b) {
  b->ArgName ("layout");
  for (int layout : {Indented, Compact, References, LongTexts}) b->Arg (layout);
  b->Unit (benchmark::kMillisecond);
}

BENCHMARK (Reader)->Apply (Layouts);
BENCHMARK (Expat)->Apply (Layouts);

}  // namespace

BENCHMARK_MAIN ();
