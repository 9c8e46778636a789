// Throughput of HVXMLDocument beside pugixml, tinyxml2 and expat on the same documents, in
// one run. Throughput is counted in characters of the document (UTF-16 units, which for these
// documents is within a few percent of their UTF-8 bytes), so every number compares.
//
//   xml_bench [--data-dir=DIR] [benchmark flags]
//
// Ends with one line per document and operation:
//   xml <document> <operation> ours=<MB/s> pugixml=<MB/s> ratio=<ours/pugixml>
// and the memory of each indexed document.
#include "XmlBenchDocuments.h"

#include "foundation/HVTextDecoder.h"
#include "foundation/HVXMLDocument.h"

#include <benchmark/benchmark.h>
#include <expat.h>
#include <pugixml.hpp>
#include <tinyxml2.h>

#include <cstdio>
#include <malloc.h>
#include <sys/wait.h>
#include <unistd.h>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace
{
struct Document
{
    std::string name;
    std::string utf8;
    HVString text;
    HVString path;
};

std::vector<std::unique_ptr<Document>> g_documents;
std::map<std::string, double> g_rates;   // benchmark name -> MB/s

void CountRate(benchmark::State& state, const Document& d)
{
    state.counters["MB/s"] = benchmark::Counter(static_cast<double>(d.text.GetLength()) / 1e6,
                                                benchmark::Counter::kIsIterationInvariantRate);
}

void OursSetDoc(benchmark::State& state, const Document* d)
{
    for (auto _ : state) {
        HVXMLDocument doc;
        benchmark::DoNotOptimize(doc.SetDoc(d->text));
    }
    CountRate(state, *d);
}

void OursLoad(benchmark::State& state, const Document* d)
{
    for (auto _ : state) {
        HVXMLDocument doc;
        benchmark::DoNotOptimize(doc.Load(d->path));
    }
    CountRate(state, *d);
}

void Pugixml(benchmark::State& state, const Document* d)
{
    for (auto _ : state) {
        pugi::xml_document doc;
        const pugi::xml_parse_result r =
            doc.load_buffer(d->utf8.data(), d->utf8.size(), pugi::parse_default, pugi::encoding_utf8);
        benchmark::DoNotOptimize(r.status);
    }
    CountRate(state, *d);
}

void Tinyxml2(benchmark::State& state, const Document* d)
{
    for (auto _ : state) {
        tinyxml2::XMLDocument doc;
        benchmark::DoNotOptimize(doc.Parse(d->utf8.data(), d->utf8.size()));
    }
    CountRate(state, *d);
}

void XMLCALL CountStart(void* data, const XML_Char*, const XML_Char**) { ++*static_cast<size_t*>(data); }
void XMLCALL NoEnd(void*, const XML_Char*) {}
void XMLCALL NoText(void*, const XML_Char*, int) {}

void Expat(benchmark::State& state, const Document* d)
{
    for (auto _ : state) {
        XML_Parser parser = XML_ParserCreate("UTF-8");
        size_t elements = 0;
        XML_SetUserData(parser, &elements);
        XML_SetElementHandler(parser, CountStart, NoEnd);
        XML_SetCharacterDataHandler(parser, NoText);
        benchmark::DoNotOptimize(XML_Parse(parser, d->utf8.data(), static_cast<int>(d->utf8.size()), 1));
        XML_ParserFree(parser);
        benchmark::DoNotOptimize(elements);
    }
    CountRate(state, *d);
}

// The n-th of a million siblings by path: the time should grow with n, linearly.
void PathToNthSibling(benchmark::State& state, const HVXMLDocument* doc)
{
    const HVString path = HVString::Format(u"/Root/Item[%d]", state.range(0));
    for (auto _ : state)
        benchmark::DoNotOptimize(doc->Select(path.view()));
    state.SetComplexityN(state.range(0));
}

class SummaryReporter : public benchmark::ConsoleReporter
{
public:
    void ReportRuns(const std::vector<Run>& runs) override
    {
        for (const Run& run : runs) {
            const auto it = run.counters.find("MB/s");
            if (it == run.counters.end())
                continue;
            // With --benchmark_repetitions the median stands for the runs (it comes last).
            if (run.run_type == Run::RT_Iteration)
                g_rates[run.run_name.function_name] = it->second.value;
            else if (run.aggregate_name == "median")
                g_rates[run.run_name.function_name] = it->second.value;
        }
        ConsoleReporter::ReportRuns(runs);
    }
};

size_t StatusField(const char* field)
{
    std::ifstream status("/proc/self/status");
    std::string line;
    const size_t length = std::strlen(field);
    while (std::getline(status, line))
        if (line.compare(0, length, field) == 0)
            return std::stoull(line.substr(length + 1)) * 1024;   // "VmRSS:   123 kB"
    return 0;
}

// The peak resident memory while indexing, above what the process held before (the text
// itself is already there): what the index costs.
void ReportMemory(const Document& d)
{
    {
        std::ofstream clear("/proc/self/clear_refs");
        clear << "5";   // resets the peak to the current resident size
    }
    const size_t before = StatusField("VmRSS:");
    HVXMLDocument doc;
    doc.SetDoc(d.text);
    const size_t peak = StatusField("VmHWM:");
    const double elements = doc.GetElemCount();
    const double textBytes = static_cast<double>(d.text.GetLength()) * sizeof(char16_t);
    const double indexPeak = peak > before ? static_cast<double>(peak - before) : 0.0;
    std::printf("xml %s memory text=%.2fMB elements=%.0f records=%.2fMB index_capacity=%.2fMB "
                "measured_peak_above_text=%.2fMB bytes_per_element=%.1f\n",
                d.name.c_str(), textBytes / 1e6, elements, elements * sizeof(HVXMLElementRecord) / 1e6,
                static_cast<double>(doc.GetIndexBytes()) / 1e6, indexPeak / 1e6,
                elements > 0 ? indexPeak / elements : 0.0);
}

HVString PathString(const std::filesystem::path& p) { return HVString::FromUtf8(p.string()); }

// Every library gets the same documents, and each must accept them, or the numbers mean nothing.
bool AllAccept(const Document& d)
{
    pugi::xml_document p;
    tinyxml2::XMLDocument t;
    XML_Parser e = XML_ParserCreate("UTF-8");
    const bool expat = XML_Parse(e, d.utf8.data(), static_cast<int>(d.utf8.size()), 1) == XML_STATUS_OK;
    XML_ParserFree(e);
    return p.load_buffer(d.utf8.data(), d.utf8.size()) && t.Parse(d.utf8.data(), d.utf8.size()) == tinyxml2::XML_SUCCESS &&
           expat;
}
}   // namespace

int main(int argc, char** argv)
{
    std::filesystem::path dataDir = std::filesystem::temp_directory_path() / "iw-xml-bench";
    std::vector<char*> args;
    for (int i = 0; i < argc; ++i) {
        if (std::strncmp(argv[i], "--data-dir=", 11) == 0)
            dataDir = argv[i] + 11;
        else
            args.push_back(argv[i]);
    }
    int count = static_cast<int>(args.size());
    benchmark::Initialize(&count, args.data());
    if (benchmark::ReportUnrecognizedArguments(count, args.data()))
        return 1;

    std::filesystem::create_directories(dataDir);
    const std::pair<const char*, std::string> sources[] = {
        {"install-4KB", MakeInstallDescription()},
        {"catalogue-1MB", MakeCatalogue(1u << 20)},
        {"catalogue-50MB", MakeCatalogue(50u << 20)},
    };
    for (const auto& [name, utf8] : sources) {
        auto d = std::make_unique<Document>();
        d->name = name;
        d->utf8 = utf8;
        HVTextDecoder::DecodeUtf8(d->utf8, d->text);
        const std::filesystem::path file = dataDir / (std::string(name) + ".xml");
        std::ofstream(file, std::ios::binary) << d->utf8;
        d->path = PathString(file);
        HVXMLDocument check;
        if (!check.SetDoc(d->text) || !check.Load(d->path) || !AllAccept(*d)) {
            std::fprintf(stderr, "xml_bench: the %s document does not parse: %s\n", name,
                         check.GetError().ToUtf8().c_str());
            return 1;
        }
        g_documents.push_back(std::move(d));
    }
    // Memory is measured in a child process in which large blocks always come from fresh
    // mappings: nothing freed earlier is quietly reused, so the peak is what indexing touches.
    // The throughput runs keep the allocator's usual behaviour.
    std::fflush(stdout);
    if (const pid_t child = fork(); child == 0) {
        mallopt(M_MMAP_THRESHOLD, 256 * 1024);
        for (const auto& d : g_documents)
            ReportMemory(*d);
        std::fflush(stdout);
        _exit(0);
    } else if (child > 0) {
        int status = 0;
        waitpid(child, &status, 0);
    }

    for (const auto& d : g_documents) {
        const Document* p = d.get();
        benchmark::RegisterBenchmark(("SetDoc/" + d->name).c_str(), OursSetDoc, p)->Unit(benchmark::kMicrosecond);
        benchmark::RegisterBenchmark(("Load/" + d->name).c_str(), OursLoad, p)->Unit(benchmark::kMicrosecond);
        benchmark::RegisterBenchmark(("pugixml/" + d->name).c_str(), Pugixml, p)->Unit(benchmark::kMicrosecond);
        benchmark::RegisterBenchmark(("tinyxml2/" + d->name).c_str(), Tinyxml2, p)->Unit(benchmark::kMicrosecond);
        benchmark::RegisterBenchmark(("expat/" + d->name).c_str(), Expat, p)->Unit(benchmark::kMicrosecond);
    }
    HVXMLDocument siblings;
    HVString siblingText;
    HVTextDecoder::DecodeUtf8(MakeSiblings(1000000), siblingText);
    siblings.SetDoc(siblingText);
    benchmark::RegisterBenchmark("PathToNthSibling", PathToNthSibling, &siblings)
        ->RangeMultiplier(10)
        ->Range(1000, 1000000)
        ->Unit(benchmark::kMicrosecond)
        ->Complexity(benchmark::oN);

    SummaryReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();
    std::printf("\n");

    for (const auto& d : g_documents) {
        const double pugixml = g_rates["pugixml/" + d->name];
        for (const char* op : {"SetDoc", "Load"}) {
            const auto it = g_rates.find(std::string(op) + "/" + d->name);
            if (it == g_rates.end() || pugixml <= 0)
                continue;
            std::printf("xml %s %s ours=%.1f pugixml=%.1f ratio=%.2f\n", d->name.c_str(), op, it->second, pugixml,
                        it->second / pugixml);
        }
        std::printf("xml %s others tinyxml2=%.1f expat=%.1f\n", d->name.c_str(), g_rates["tinyxml2/" + d->name],
                    g_rates["expat/" + d->name]);
    }
    return 0;
}
