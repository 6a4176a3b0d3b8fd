// qvxml: converts documents between XML text and Fast Infoset, plain or compressed, and
// reports what a document holds. Works on any document through the document tree, with
// no schema: the loaded tree is written straight through the library's writers.

#include <QvXml10/QvXml10.h>

#include <cerrno>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <unordered_set>
#include <unistd.h>
#include <utility>
#include <vector>

using namespace QvXmlLib10;

namespace {

constexpr unsigned long long kProgressThreshold = 50ull * 1024 * 1024;

const char kMainHelp[] = "Usage: qvxml COMMAND [options]\n"
                         "\n"
                         "Commands:\n"
                         "  convert INPUT OUTPUT [options]   convert between XML text and Fast Infoset\n"
                         "  inspect INPUT                    describe a document\n"
                         "\n"
                         "  qvxml COMMAND --help             help on a command\n"
                         "  qvxml --version                  the version\n";

const char kConvertHelp[] = "Usage: qvxml convert INPUT OUTPUT [options]\n"
                            "\n"
                            "Reads XML text or Fast Infoset, plain, gzip or zlib (recognised from the bytes),\n"
                            "and writes it in the form asked for. '-' is standard input or output.\n"
                            "\n"
                            "Options:\n"
                            "  --to xml|fi              output format (default: fi for an OUTPUT ending in .fi\n"
                            "                           or .finf, else xml)\n"
                            "  --gzip                   compress the output with gzip\n"
                            "  --zlib                   compress the output with zlib\n"
                            "  --encoding utf-8|utf-16  character encoding of XML output (default utf-8)\n"
                            "  --crlf                   end XML lines with CR LF\n"
                            "  --compact                no indentation or line breaks in XML output\n"
                            "  --no-declaration         no XML declaration\n"
                            "  --fi-suggested           Fast Infoset with the suggested encodings of values\n"
                            "  --fi-max-add N           longest Fast Infoset value entered in the value tables\n";

const char kInspectHelp[] = "Usage: qvxml inspect INPUT\n"
                            "\n"
                            "Prints the form of a document (XML text, Fast Infoset, gzip or zlib of either),\n"
                            "its sizes, counts of elements, attributes and texts, the maximum depth, the\n"
                            "number of distinct names, the namespaces with their prefixes, and the number\n"
                            "of elements whose text and child elements are mixed. '-' is standard input.\n";

// A wrong command line: the message, and exit status 2.
struct UsageError {
    std::string message;
};

// A failure of input or output outside the library, with its message; exit status 1.
struct IoError {
    std::string message;
};

// A byte array as CQvZip hands them over: allocated with new[].
struct Bytes {
    std::unique_ptr<unsigned char[]> data;
    unsigned long length = 0;
};

std::string DisplayName(const std::string& path) { return path == "-" ? "<stdin>" : path; }

bool ShowProgress(unsigned long long size) { return size > kProgressThreshold && isatty(2); }

void Progress(const char* step, const std::string& name) {
    std::fprintf(stderr, "\rqvxml: %s %s...\033[K", step, name.c_str());
    std::fflush(stderr);
}

void EndProgress() {
    std::fprintf(stderr, "\r\033[K");
    std::fflush(stderr);
}

Bytes ReadInput(const std::string& path) {
    FILE* file = path == "-" ? stdin : std::fopen(path.c_str(), "rb");
    if (!file) throw IoError{"cannot open " + path + ": " + std::strerror(errno)};
    std::unique_ptr<FILE, int (*)(FILE*)> closer(file == stdin ? nullptr : file, &std::fclose);
    Bytes bytes;
    unsigned long capacity = 0;
    const long known = file == stdin ? -1 : _filelength(file);
    if (known > 0) capacity = static_cast<unsigned long>(known);
    if (capacity == 0) capacity = 65536;
    bytes.data.reset(new unsigned char[capacity]);
    for (;;) {
        if (bytes.length == capacity) {
            // A file of the size announced ends here: no larger copy just to see the end.
            const int next = std::fgetc(file);
            if (next == EOF) break;
            const unsigned long grown = capacity * 2;
            std::unique_ptr<unsigned char[]> larger(new unsigned char[grown]);
            std::memcpy(larger.get(), bytes.data.get(), bytes.length);
            bytes.data = std::move(larger);
            capacity = grown;
            bytes.data[bytes.length++] = static_cast<unsigned char>(next);
        }
        const size_t got = std::fread(bytes.data.get() + bytes.length, 1, capacity - bytes.length, file);
        bytes.length += static_cast<unsigned long>(got);
        if (got == 0) break;
    }
    if (std::ferror(file)) throw IoError{"cannot read " + DisplayName(path) + ": " + std::strerror(errno)};
    return bytes;
}

// The output file or standard output, opened at the first write. A file left unfinished
// by a failure is removed.
class COutputFile {
public:
    explicit COutputFile(std::string path) : m_path(std::move(path)) {}
    ~COutputFile() {
        if (m_pFile && m_pFile != stdout) {
            std::fclose(m_pFile);
            std::remove(m_path.c_str());
        }
    }
    COutputFile(const COutputFile&) = delete;
    COutputFile& operator=(const COutputFile&) = delete;

    const std::string& Name() const { return m_name; }

    void Write(const unsigned char* data, unsigned long length) {
        Open();
        if (length != 0 && std::fwrite(data, 1, length, m_pFile) != length) throw IoError{"cannot write " + m_name};
    }
    void Finish() {
        Open();
        FILE* const file = m_pFile;
        m_pFile = nullptr;
        if (file == stdout ? std::fflush(file) != 0 : std::fclose(file) != 0) throw IoError{"cannot write " + m_name};
    }

private:
    void Open() {
        if (m_pFile) return;
        m_pFile = m_path == "-" ? stdout : std::fopen(m_path.c_str(), "wb");
        if (!m_pFile) throw IoError{"cannot open " + m_path + ": " + std::strerror(errno)};
    }

    std::string m_path;
    std::string m_name = m_path == "-" ? "<stdout>" : m_path;
    FILE* m_pFile = nullptr;
};

// Where encoded output goes: straight to the file, or collected for compression.
class COutputSink {
public:
    COutputSink(COutputFile& file, bool collect) : m_file(file), m_collect(collect) {}
    void Put(const CBinaryData& bytes) {
        if (m_collect)
            m_collected.Append(bytes);
        else
            m_file.Write(bytes.GetData(), bytes.GetLength());
    }
    CBinaryData& Collected() { return m_collected; }

private:
    COutputFile& m_file;
    bool m_collect;
    CBinaryData m_collected;
};

// A text sink that hands its text on, encoded, whenever the writer flushes, so that the
// whole text is never held at once.
class CPassingTextStream : public CTextStream {
public:
    CPassingTextStream(XmlEncoding encoding, COutputSink& sink) : CTextStream(encoding), m_sink(sink) {}
    void Flush() override {
        if (GetLength() == 0) return;
        m_sink.Put(GetEncodedStream());
        m_buffer.Empty();
    }

private:
    COutputSink& m_sink;
};

// ---------------------------------------------------------------------------------------------
// What a loaded document is made of

enum class Compression { None, GZip, ZLib };

// The input as the loader sees it: decompressed, with what it was.
struct Input {
    Bytes bytes;
    unsigned long long fileSize = 0;
    Compression compression = Compression::None;
    bool fastInfoset = false;
};

bool StartsWith(const Bytes& bytes, std::string_view prefix) {
    return bytes.length >= prefix.size() && std::memcmp(bytes.data.get(), prefix.data(), prefix.size()) == 0;
}

// The Fast Infoset identification, bare or behind one of its XML declarations.
bool IsFastInfoset(const Bytes& bytes) {
    if (StartsWith(bytes, std::string_view("\xE0\x00\x00", 3))) return true;
    for (const char* declaration : FI_DECLARATION_LIST)
        if (StartsWith(bytes, declaration)) return true;
    return false;
}

// Decompression is left to CQvZip, which leaves anything that is no gzip or zlib stream
// as it was; the form is told for the report.
Input Decompress(Bytes raw) {
    Input input;
    input.fileSize = raw.length;
    const bool gzip = StartsWith(raw, "\x1F\x8B");
    unsigned char* data = raw.data.release();
    unsigned long length = raw.length;
    const unsigned char* const before = data;
    try {
        CQvZip().Decompress(&data, &length);
    } catch (...) {
        if (data == before) delete[] data;
        throw;
    }
    if (data != before) input.compression = gzip ? Compression::GZip : Compression::ZLib;
    input.bytes.data.reset(data);
    input.bytes.length = length;
    input.fastInfoset = IsFastInfoset(input.bytes);
    return input;
}

// The prefixes the text declares (xmlns:p="uri"), found by a scan of the bytes, each with
// the URI of its last declaration as written. NUL bytes are skipped, so that UTF-16 text
// works too.
std::map<std::string, std::string> DeclaredPrefixes(const Bytes& bytes) {
    std::string text;
    std::string_view view(reinterpret_cast<const char*>(bytes.data.get()), bytes.length);
    if (view.find('\0') != std::string_view::npos) {
        text.reserve(bytes.length / 2);
        for (char c : view)
            if (c != '\0') text += c;
        view = text;
    }
    std::map<std::string, std::string> prefixes;
    constexpr std::string_view kMarker = "xmlns:";
    for (size_t at = view.find(kMarker); at != std::string_view::npos; at = view.find(kMarker, at + 1)) {
        const size_t start = at + kMarker.size();
        const size_t end = view.find_first_of("= \t\r\n>/\"'", start);
        if (end == std::string_view::npos || end == start) continue;
        const size_t quote = view.find_first_of("\"'", end);
        const size_t close = quote == std::string_view::npos ? quote : view.find(view[quote], quote + 1);
        if (close == std::string_view::npos) continue;
        prefixes[std::string(view.substr(start, end - start))] = view.substr(quote + 1, close - quote - 1);
    }
    return prefixes;
}

bool IsWhitespace(const std::string& text) { return text.find_first_not_of(" \t\r\n") == std::string::npos; }

// Namespace URI to the prefixes the document declares for it; "" stands for the default.
using PrefixMap = std::map<std::string, std::vector<std::string>>;

// The prefixes of the document's alias map; while the document is still being read, a
// prefix not declared yet takes the URI the scan found for it.
PrefixMap DocumentPrefixes(const CXmlDocument& document, const Input& input) {
    PrefixMap prefixes;
    if (input.fastInfoset) return prefixes; // the Fast Infoset reader keeps no prefixes
    for (const auto& [prefix, scanned] : DeclaredPrefixes(input.bytes)) {
        std::string uri = document.LookupNamespaceFromAlias(prefix.c_str());
        if (uri.empty()) uri = scanned;
        if (!uri.empty()) prefixes[uri].push_back(prefix);
    }
    const std::string defaultNamespace = document.LookupNamespaceFromAlias("");
    if (!defaultNamespace.empty()) prefixes[defaultNamespace].insert(prefixes[defaultNamespace].begin(), "");
    return prefixes;
}

// Loads the input; a refusal of the library propagates as CQvException.
void Load(CXmlDocument& document, Input& input, const std::string& name) {
    const bool progress = ShowProgress(input.fileSize);
    if (progress) Progress("loading", name);
    document.LoadXmlStream(input.bytes.data.get(), input.bytes.length);
    if (progress) EndProgress();
}

// ---------------------------------------------------------------------------------------------
// Writing the tree

// Hands the document's own prefixes and default namespace to the writer before the root.
void DeclareNamespaces(CXmlWriter& writer, const PrefixMap& prefixes) {
    for (const auto& [uri, names] : prefixes) {
        for (const std::string& prefix : names) {
            if (prefix.empty()) {
                writer.SetDefaultNamespace(uri);
            } else {
                writer.AddNamespace(prefix, uri);
                break;
            }
        }
    }
}

// Writes the tree without recursion, so that depth costs no stack. The text of an element
// with children goes in front of them; whitespace-only text between children is left to
// the writer's own layout.
void WriteTree(CXmlWriter& writer, const CXmlElement* top) {
    std::vector<const CXmlElement*> open;
    const CXmlElement* element = top;
    for (;;) {
        writer.WriteStartElement(element->GetLocalName(), element->GetNamespaceURI());
        for (const auto& attribute : element->GetAttributes())
            writer.WriteAttributeString(attribute->GetLocalName(), attribute->GetNamespaceURI(), attribute->GetValue(),
                                        ItemType_string);
        const CXmlElement* child = element->GetFirstElement();
        const std::string& text = element->GetText();
        if (!text.empty() && !(child && IsWhitespace(text))) writer.WriteString(text, ItemType_string);
        if (child) {
            open.push_back(element);
            element = child;
            continue;
        }
        writer.WriteEndElement();
        while (!open.empty() && !element->GetNextSiblingElement()) {
            writer.WriteEndElement();
            element = open.back();
            open.pop_back();
        }
        if (open.empty()) break;
        element = element->GetNextSiblingElement();
    }
}

struct ConvertOptions {
    std::string input;
    std::string output;
    std::string to;
    Compression compression = Compression::None;
    std::string encoding = "utf-8";
    bool crlf = false;
    bool compact = false;
    bool noDeclaration = false;
    bool fiSuggested = false;
    bool fiMaxAddGiven = false;
    unsigned long fiMaxAdd = 0;
    std::vector<std::string> xmlOnly; // XML options given, for the check against --to fi
};

// One conversion: the writer of the output format on its sink.
class CConversion {
public:
    CConversion(const ConvertOptions& options, COutputSink& sink) : m_sink(sink) {
        if (options.to == "fi") {
            if (options.fiSuggested) m_fiContext.SetSuggestedValues();
            if (options.fiMaxAddGiven) {
                m_fiContext.SetAttributeMaxAddLength(options.fiMaxAdd);
                m_fiContext.SetElementMaxAddLength(options.fiMaxAdd);
            }
            m_pFiWriter = std::make_unique<CFastInfosetWriter>(m_fiContext, m_binary);
            return;
        }
        const bool utf16 = options.encoding == "utf-16";
        if (utf16) {
            // UTF-16 text begins with its byte order mark, as the library's own files do; a
            // compressed file carries it inside.
            unsigned char mark[2] = {0xFF, 0xFE};
            sink.Put(CBinaryData(mark, 2, false));
        }
        m_pText = std::make_unique<CPassingTextStream>(utf16 ? XmlEncoding_UTF16 : XmlEncoding_UTF8, sink);
        m_pTextWriter = std::make_unique<CXmlTextWriter>(*m_pText);
        m_pTextWriter->SetFormat(!options.compact);
        m_pTextWriter->SetEOLType(options.crlf ? EOLType_CRLF : EOLType_LF);
        m_declaration = !options.noDeclaration;
    }

    CXmlWriter& Writer() { return m_pFiWriter ? static_cast<CXmlWriter&>(*m_pFiWriter) : *m_pTextWriter; }

    // Everything in front of the root element.
    void Begin(const PrefixMap& prefixes) {
        if (m_pFiWriter) {
            m_pFiWriter->Open();
            m_pFiWriter->WriteStartDocument(FInfoDecl_None);
        } else {
            m_pTextWriter->Open();
            if (m_declaration) m_pTextWriter->WriteStartDocument();
        }
        DeclareNamespaces(Writer(), prefixes);
    }

    void End() {
        if (m_pFiWriter) {
            m_pFiWriter->WriteEndDocument();
            m_pFiWriter->Close();
            m_sink.Put(m_binary.GetBinaryStream());
        } else {
            m_pTextWriter->Close();
            m_pText->Flush();
        }
    }

private:
    COutputSink& m_sink;
    bool m_declaration = false;
    CFastInfosetContext m_fiContext;
    CBinaryStream m_binary;
    std::unique_ptr<CFastInfosetWriter> m_pFiWriter;
    std::unique_ptr<CPassingTextStream> m_pText;
    std::unique_ptr<CXmlTextWriter> m_pTextWriter;
};

// Text input is written while it is read: each child of the root goes out when its end
// tag has been read and then leaves the tree, so that the tree never holds more than one
// of them. The element hook of the document takes no argument of its own, hence the
// pointer to the conversion in progress.
struct StreamingState {
    CXmlDocument* document;
    CConversion* conversion;
    const Input* input;
    std::string outputName;
    bool rootStarted;
};
StreamingState* g_pStreaming = nullptr;

bool StreamChildOfRoot(CXmlElement* element) {
    StreamingState& state = *g_pStreaming;
    const CXmlElement* root = state.document->GetDocumentElement();
    // Earlier children are gone, so a child of the root is its first one.
    if (element == root || root->GetFirstElement() != element) return false;
    try {
        CXmlWriter& writer = state.conversion->Writer();
        if (!state.rootStarted) {
            state.conversion->Begin(DocumentPrefixes(*state.document, *state.input));
            writer.WriteStartElement(root->GetLocalName(), root->GetNamespaceURI());
            for (const auto& attribute : root->GetAttributes())
                writer.WriteAttributeString(attribute->GetLocalName(), attribute->GetNamespaceURI(),
                                            attribute->GetValue(), ItemType_string);
            state.rootStarted = true;
        }
        WriteTree(writer, element);
    } catch (const CQvException& error) {
        throw IoError{state.outputName + ": " + error.GetFullMessage()};
    }
    return true;
}

// ---------------------------------------------------------------------------------------------
// Commands

std::string OutputFormatFromName(const std::string& output) {
    auto endsWith = [&](std::string_view suffix) {
        return output.size() >= suffix.size() &&
               output.compare(output.size() - suffix.size(), suffix.size(), suffix.data(), suffix.size()) == 0;
    };
    return endsWith(".fi") || endsWith(".finf") ? "fi" : "xml";
}

// True when --help was asked for.
bool ParseConvert(int argc, char** argv, ConvertOptions& options) {
    std::vector<std::string> files;
    for (int i = 2; i < argc; ++i) {
        const std::string arg = argv[i];
        auto value = [&]() -> std::string {
            if (i + 1 >= argc) throw UsageError{"option " + arg + " needs a value"};
            return argv[++i];
        };
        if (arg == "--help" || arg == "-h") return true;
        if (arg == "--to") {
            options.to = value();
            if (options.to != "xml" && options.to != "fi")
                throw UsageError{"--to takes xml or fi, not '" + options.to + "'"};
        } else if (arg == "--gzip" || arg == "--zlib") {
            const Compression asked = arg == "--gzip" ? Compression::GZip : Compression::ZLib;
            if (options.compression != Compression::None && options.compression != asked)
                throw UsageError{"--gzip and --zlib exclude each other"};
            options.compression = asked;
        } else if (arg == "--encoding") {
            options.encoding = value();
            if (options.encoding != "utf-8" && options.encoding != "utf-16")
                throw UsageError{"--encoding takes utf-8 or utf-16, not '" + options.encoding + "'"};
            options.xmlOnly.push_back(arg);
        } else if (arg == "--crlf" || arg == "--compact" || arg == "--no-declaration") {
            (arg == "--crlf" ? options.crlf : arg == "--compact" ? options.compact : options.noDeclaration) = true;
            options.xmlOnly.push_back(arg);
        } else if (arg == "--fi-suggested") {
            options.fiSuggested = true;
        } else if (arg == "--fi-max-add") {
            const std::string number = value();
            char* end = nullptr;
            errno = 0;
            const unsigned long long parsed = std::strtoull(number.c_str(), &end, 10);
            if (number.empty() || number[0] == '-' || *end != '\0' || errno != 0 || parsed > 0xFFFFFFFFull)
                throw UsageError{"--fi-max-add takes a number, not '" + number + "'"};
            options.fiMaxAdd = static_cast<unsigned long>(parsed);
            options.fiMaxAddGiven = true;
        } else if (arg.size() > 1 && arg[0] == '-') {
            throw UsageError{"unknown option " + arg};
        } else {
            files.push_back(arg);
        }
    }
    if (files.size() != 2) throw UsageError{"convert needs INPUT and OUTPUT"};
    options.input = files[0];
    options.output = files[1];
    if (options.to.empty()) options.to = OutputFormatFromName(options.output);
    if (options.to == "fi" && !options.xmlOnly.empty())
        throw UsageError{options.xmlOnly.front() + " applies to XML output only"};
    if (options.to == "xml" && (options.fiSuggested || options.fiMaxAddGiven))
        throw UsageError{"--fi options apply to Fast Infoset output only"};
    return false;
}

// One attempt at a conversion, written while the input is read when `streaming`. The root's
// text is only complete at its end, and it belongs in front of the children: a streamed
// document whose root has text answers false, having written nothing, for a second attempt
// on the whole tree.
bool ConvertOnce(const ConvertOptions& options, Input& input, const std::string& name, COutputFile& file,
                 bool streaming) {
    COutputSink sink(file, streaming || options.compression != Compression::None);
    CConversion conversion(options, sink);
    CXmlDocument document(streaming ? &StreamChildOfRoot : nullptr);
    StreamingState state{&document, &conversion, &input, file.Name(), false};
    g_pStreaming = &state;
    try {
        Load(document, input, name);
        g_pStreaming = nullptr;
    } catch (const CQvException& error) {
        g_pStreaming = nullptr;
        throw IoError{name + ": " + error.GetFullMessage()};
    } catch (...) {
        g_pStreaming = nullptr;
        throw;
    }
    try {
        const bool progress = ShowProgress(input.fileSize);
        if (progress) Progress("writing", file.Name());
        const CXmlElement* root = document.GetDocumentElement();
        if (state.rootStarted) {
            if (!IsWhitespace(root->GetText())) return false;
            conversion.Writer().WriteEndElement();
        } else {
            conversion.Begin(DocumentPrefixes(document, input));
            input.bytes = Bytes(); // the tree holds its own copy of everything
            WriteTree(conversion.Writer(), root);
        }
        input.bytes = Bytes();
        document.Cleanup();
        conversion.End();
        if (options.compression != Compression::None)
            CQvZip().CompressData(sink.Collected(), options.compression == Compression::GZip ? CompressionType_GZip
                                                                                             : CompressionType_ZLib);
        file.Write(sink.Collected().GetData(), sink.Collected().GetLength());
        if (progress) EndProgress();
    } catch (const CQvException& error) {
        throw IoError{file.Name() + ": " + error.GetFullMessage()};
    }
    return true;
}

int Convert(int argc, char** argv) {
    ConvertOptions options;
    if (ParseConvert(argc, argv, options)) {
        std::fputs(kConvertHelp, stdout);
        return 0;
    }
    const std::string name = DisplayName(options.input);
    Input input = Decompress(ReadInput(options.input));
    COutputFile file(options.output);
    // The element hook sees text input only; Fast Infoset input is read whole.
    if (!ConvertOnce(options, input, name, file, !input.fastInfoset)) ConvertOnce(options, input, name, file, false);
    file.Finish();
    return 0;
}

// Counts of the tree, gathered a subtree at a time.
struct Statistics {
    unsigned long long elements = 0;
    unsigned long long attributes = 0;
    unsigned long long texts = 0;
    unsigned long long mixed = 0;
    unsigned long long maxDepth = 0;
    unsigned long long rootChildren = 0; // children of the root that were counted and removed
    // A document keeps each distinct name once, so its address finds most repeats cheaply.
    std::unordered_set<const std::string*> seen;
    std::set<std::pair<std::string, std::string>> names;
    std::set<std::string> namespaces;

    void Name(const std::string& namespaceUri, const std::string& localName) {
        if (!seen.insert(&localName).second) return;
        names.emplace(namespaceUri, localName);
        if (!namespaceUri.empty()) namespaces.insert(namespaceUri);
    }
};

// Counts the subtree under `top`, which stands at `depth`; with `withChildren` false, only the
// element itself and not its children.
void Gather(const CXmlElement* top, unsigned long long depth, bool withChildren, Statistics& stats) {
    std::vector<std::pair<const CXmlElement*, unsigned long long>> pending{{top, depth}};
    while (!pending.empty()) {
        const auto [element, level] = pending.back();
        pending.pop_back();
        ++stats.elements;
        if (level > stats.maxDepth) stats.maxDepth = level;
        stats.Name(element->GetNamespaceURI(), element->GetLocalName());
        for (const auto& attribute : element->GetAttributes()) {
            ++stats.attributes;
            stats.Name(attribute->GetNamespaceURI(), attribute->GetLocalName());
        }
        const CXmlElement* child = element->GetFirstElement();
        if (!IsWhitespace(element->GetText())) {
            ++stats.texts;
            if (child || (element == top && !withChildren)) ++stats.mixed;
        }
        if (element == top && !withChildren) continue;
        for (; child; child = child->GetNextSiblingElement())
            pending.emplace_back(child, level + 1);
    }
}

// Text input is counted while it is read, one child of the root at a time.
struct InspectState {
    CXmlDocument* document;
    Statistics* stats;
};
InspectState* g_pInspecting = nullptr;

bool CountChildOfRoot(CXmlElement* element) {
    const CXmlElement* root = g_pInspecting->document->GetDocumentElement();
    if (element == root || root->GetFirstElement() != element) return false;
    Gather(element, 2, true, *g_pInspecting->stats);
    ++g_pInspecting->stats->rootChildren;
    return true;
}

const char* FormName(const Input& input) {
    static const char* const kNames[3][2] = {{"XML text", "Fast Infoset"},
                                             {"gzip of XML text", "gzip of Fast Infoset"},
                                             {"zlib of XML text", "zlib of Fast Infoset"}};
    return kNames[static_cast<int>(input.compression)][input.fastInfoset ? 1 : 0];
}

int Inspect(int argc, char** argv) {
    std::vector<std::string> files;
    for (int i = 2; i < argc; ++i) {
        const std::string arg = argv[i];
        if (arg == "--help" || arg == "-h") {
            std::fputs(kInspectHelp, stdout);
            return 0;
        }
        if (arg.size() > 1 && arg[0] == '-') throw UsageError{"unknown option " + arg};
        files.push_back(arg);
    }
    if (files.size() != 1) throw UsageError{"inspect needs one INPUT"};
    const std::string name = DisplayName(files[0]);
    Input input = Decompress(ReadInput(files[0]));
    CXmlDocument document(input.fastInfoset ? nullptr : &CountChildOfRoot);
    Statistics stats;
    InspectState state{&document, &stats};
    g_pInspecting = &state;
    try {
        Load(document, input, name);
        g_pInspecting = nullptr;
    } catch (const CQvException& error) {
        g_pInspecting = nullptr;
        throw IoError{name + ": " + error.GetFullMessage()};
    }
    const PrefixMap prefixes = DocumentPrefixes(document, input);
    // The root last: its text is complete only now, and children counted before make it mixed.
    const CXmlElement* root = document.GetDocumentElement();
    Gather(root, 1, stats.rootChildren == 0, stats);
    std::printf("form: %s\n", FormName(input));
    std::printf("size: %llu bytes\n", input.fileSize);
    if (input.compression != Compression::None)
        std::printf("decompressed size: %llu bytes\n", static_cast<unsigned long long>(input.bytes.length));
    std::printf("elements: %llu\nattributes: %llu\ntexts: %llu\nmaximum depth: %llu\ndistinct names: %zu\n",
                stats.elements, stats.attributes, stats.texts, stats.maxDepth, stats.names.size());
    for (const auto& entry : prefixes)
        stats.namespaces.insert(entry.first);
    std::printf("namespaces: %zu\n", stats.namespaces.size());
    for (const std::string& uri : stats.namespaces) {
        std::string shown;
        const auto found = prefixes.find(uri);
        if (found != prefixes.end())
            for (const std::string& prefix : found->second)
                shown += (shown.empty() ? " (" : ", ") + (prefix.empty() ? std::string("default") : prefix);
        std::printf("  %s%s%s\n", uri.c_str(), shown.c_str(), shown.empty() ? "" : ")");
    }
    std::printf("elements with mixed content: %llu\n", stats.mixed);
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    std::setlocale(LC_ALL, "");
    try {
        const std::string command = argc > 1 ? argv[1] : "";
        if (command == "--help" || command == "-h") {
            std::fputs(kMainHelp, stdout);
            return 0;
        }
        if (command == "--version") {
            std::printf("qvxml %s\n", QVXML_TOOL_VERSION);
            return 0;
        }
        if (command == "convert") return Convert(argc, argv);
        if (command == "inspect") return Inspect(argc, argv);
        throw UsageError{command.empty() ? "no command given" : "unknown command '" + command + "'"};
    } catch (const UsageError& error) {
        std::fprintf(stderr, "qvxml: %s\nTry 'qvxml --help'.\n", error.message.c_str());
        return 2;
    } catch (const IoError& error) {
        std::fprintf(stderr, "qvxml: %s\n", error.message.c_str());
        return 1;
    } catch (const CQvException& error) {
        std::fprintf(stderr, "qvxml: %s\n", error.GetFullMessage().c_str());
        return 1;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "qvxml: %s\n", error.what());
        return 1;
    }
}
