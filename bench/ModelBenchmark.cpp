// Speed and memory of loading, writing, copying and walking documents.

#include <malloc.h>

#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "TesselODX220Model.h"
#include "TesselODX220Xml/VOdxDocuments.h"
#include "TesselODX220Xml/VOdxReader.h"
#include "TesselODX220Xml/VOdxWriter.h"

using namespace NODX220;
using namespace NODX220Xml;

namespace {

// A container with `groups` companies, each with a team, roles, descriptions and special data,
// and administrative data that refers to them: the kinds of element the model holds today.
std::string MakeDocument(int groups)
{
    std::string text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<ODX MODEL-VERSION=\"2.2.0\">\n"
                       "<DIAG-LAYER-CONTAINER ID=\"DLC\"><SHORT-NAME>Big</SHORT-NAME><ADMIN-DATA><DOC-REVISIONS>\n";
    for (int i = 0; i < groups; ++i) {
        const std::string n = std::to_string(i);
        text += "<DOC-REVISION><TEAM-MEMBER-REF ID-REF=\"TM." + n + "\"/><REVISION-LABEL>" + n +
                "</REVISION-LABEL><DATE>2026-11-01T09:30:00+01:00</DATE><MODIFICATIONS><MODIFICATION>"
                "<CHANGE>change " + n + "</CHANGE></MODIFICATION></MODIFICATIONS></DOC-REVISION>\n";
    }
    text += "</DOC-REVISIONS></ADMIN-DATA><COMPANY-DATAS>\n";
    for (int i = 0; i < groups; ++i) {
        const std::string n = std::to_string(i);
        text += "<COMPANY-DATA ID=\"CD." + n + "\"><SHORT-NAME>Company" + n +
                "</SHORT-NAME><LONG-NAME TI=\"TI." + n + "\">Company number " + n +
                "</LONG-NAME><DESC><p>A <b>company</b> &amp; its team.</p></DESC><ROLES><ROLE>supplier</ROLE>"
                "</ROLES><TEAM-MEMBERS><TEAM-MEMBER ID=\"TM." + n + "\"><SHORT-NAME>M" + n +
                "</SHORT-NAME><EMAIL>m" + n + "@example.org</EMAIL></TEAM-MEMBER></TEAM-MEMBERS>"
                "<COMPANY-SPECIFIC-INFO><SDGS><SDG SI=\"s\"><SD SI=\"a\">1</SD><SD>2</SD><SDG><SD>3</SD></SDG></SDG>"
                "</SDGS></COMPANY-SPECIFIC-INFO></COMPANY-DATA>\n";
    }
    text += "</COMPANY-DATAS></DIAG-LAYER-CONTAINER>\n</ODX>\n";
    return text;
}

size_t ElementCount(VOdx& odx)
{
    size_t count = 0;
    VOdxWalk::Tree(odx, [&count](VOdxElement&) { ++count; });
    return count;
}

void BM_Read(benchmark::State& state)
{
    const std::string text = MakeDocument(static_cast<int>(state.range(0)));
    size_t elements = 0;
    for (auto _ : state) {
        VLoadResult result = VOdxReader().ReadBuffer("big.odx-d", text.data(), text.size());
        if (result.GetDocument() == nullptr) {
            state.SkipWithError("the document did not load");
            return;
        }
        elements = ElementCount(*result.GetDocument());
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * text.size()));
    state.counters["elements"] = static_cast<double>(elements);
    state.counters["elements/s"] = benchmark::Counter(static_cast<double>(elements * state.iterations()),
                                                      benchmark::Counter::kIsRate);
}
BENCHMARK(BM_Read)->Arg(100)->Arg(2000)->Unit(benchmark::kMillisecond);

// Heap in use for a loaded document, per element and against the size of its text.
void BM_Memory(benchmark::State& state)
{
    const std::string text = MakeDocument(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        const size_t before = mallinfo2().uordblks;
        VLoadResult result = VOdxReader().ReadBuffer("big.odx-d", text.data(), text.size());
        const size_t after = mallinfo2().uordblks;
        const size_t elements = ElementCount(*result.GetDocument());
        state.counters["bytes/element"] = static_cast<double>(after - before) / static_cast<double>(elements);
        state.counters["heap/text"] = static_cast<double>(after - before) / static_cast<double>(text.size());
    }
}
BENCHMARK(BM_Memory)->Arg(2000)->Iterations(1)->Unit(benchmark::kMillisecond);

void BM_Write(benchmark::State& state)
{
    const std::string text = MakeDocument(static_cast<int>(state.range(0)));
    VLoadResult result = VOdxReader().ReadBuffer("big.odx-d", text.data(), text.size());
    size_t written = 0;
    for (auto _ : state) {
        const std::vector<VWrittenDocument> documents = VOdxWriter().WriteDocuments(*result.GetDocument());
        written = documents.front().mText.size();
        benchmark::DoNotOptimize(written);
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * written));
}
BENCHMARK(BM_Write)->Arg(2000)->Unit(benchmark::kMillisecond);

void BM_CopyDocument(benchmark::State& state)
{
    const std::string text = MakeDocument(static_cast<int>(state.range(0)));
    VLoadResult result = VOdxReader().ReadBuffer("big.odx-d", text.data(), text.size());
    VOdx& source = *result.GetDocument();
    for (auto _ : state) {
        VOdx& copy = source.Clone(source);
        copy.GetOdxLinkSet().ResolveReferences(true);
        VOdxDocuments::Destroy(copy);
    }
}
BENCHMARK(BM_CopyDocument)->Arg(2000)->Unit(benchmark::kMillisecond);

void BM_Paths(benchmark::State& state)
{
    const std::string text = MakeDocument(static_cast<int>(state.range(0)));
    VLoadResult result = VOdxReader().ReadBuffer("big.odx-d", text.data(), text.size());
    for (auto _ : state) {
        size_t length = 0;
        VOdxWalk::Tree(*result.GetDocument(), [&length](VOdxElement& element) {
            length += element.GetXPATH(eXPathShortName).GetLength();
        });
        benchmark::DoNotOptimize(length);
    }
}
BENCHMARK(BM_Paths)->Arg(2000)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
