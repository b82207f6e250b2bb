// The XML reader and writer beside a DOM library, on a document about many images. Both have to see
// the same document before anything is timed; the rounds of all candidates take turns.
#include <malloc.h>
#include <tinyxml.h>
#include <vrelio/json/value.h>
#include <vrelio/json/write_xml.h>
#include <vrelio/json/xml_reader.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

namespace {

constexpr std::size_t document_size = 20u << 20;
constexpr std::size_t slice_size = 64u << 10;
constexpr int rounds = 7;

void require(bool condition, const char* what) {
  if (condition) return;
  std::fprintf(stderr, "%s\n", what);
  std::exit(1);
}

// --- The document

std::string number(int value) { return std::to_string(value); }

std::string channel(int image, int index) {
  const std::string id = number(image) + ':' + number(index);
  return "      <Channel ID=\"Channel:" + id + "\" Name=\"Alexa " + number(405 + 83 * index) +
         "\" SamplesPerPixel=\"1\" ExcitationWavelength=\"" + number(405 + 83 * index) +
         ".5\" Color=\"-16776961\">\n        <LightPath><DichroicRef ID=\"Dichroic:" + id +
         "\"/></LightPath>\n      </Channel>\n";
}

std::string plane(int image, int index) {
  return "      <Plane TheZ=\"" + number(index) + "\" TheT=\"0\" TheC=\"0\" DeltaT=\"" +
         number(image) + '.' + number(index + 125) + "\" ExposureTime=\"0.025\" PositionX=\"" +
         number(17 * image) + ".75\"/>\n";
}

std::string pixels(int image) {
  std::string text =
      "    <Pixels ID=\"Pixels:" + number(image) +
      "\" DimensionOrder=\"XYZCT\" Type=\"uint16\" BigEndian=\"false\" SizeX=\"2048\" "
      "SizeY=\"2048\" SizeZ=\"8\" SizeC=\"2\" SizeT=\"1\" PhysicalSizeX=\"0.065\" "
      "PhysicalSizeY=\"0.065\" PhysicalSizeZ=\"0.3\">\n";
  for (int i = 0; i < 2; ++i) text += channel(image, i);
  for (int i = 0; i < 8; ++i) text += plane(image, i);
  return text + "    </Pixels>\n";
}

std::string image_text(int image) {
  return "  <Image ID=\"Image:" + number(image) + "\" Name=\"Field " + number(image) +
         "\">\n    <AcquisitionDate>" + number(2001 + image % 20) +
         "-05-17T09:30:10</AcquisitionDate>\n    <Description>Fixed cells, nuclei &amp; "
         "membranes, gain &lt; 3, seen through oil</Description>\n    <Rank>" +
         number(image) + "</Rank>\n    <Zoom>1." + number(image % 90 + 10) +
         "</Zoom>\n    <Checked>" + (image % 3 == 0 ? "true" : "false") + "</Checked>\n" +
         pixels(image) + "  </Image>\n";
}

std::string make_document() {
  std::string text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<OME Creator=\"bench\">\n";
  for (int image = 0; text.size() < document_size; ++image) text += image_text(image);
  return text + "</OME>\n";
}

// --- What is seen of it

struct Census {
  std::size_t elements = 0;
  std::size_t attributes = 0;
  std::size_t characters = 0;  // of texts that are strings
  long sum_of_ranks = 0;
};

bool operator==(const Census& left, const Census& right) {
  return left.elements == right.elements && left.attributes == right.attributes &&
         left.characters == right.characters && left.sum_of_ranks == right.sum_of_ranks;
}

void count_children(const Json::Object& children, Census& census);

void count_content(const Json::Value& content, const std::string& name, Census& census) {
  if (content.kind() == Json::kind_map) count_children(content.map(), census);
  if (content.kind() == Json::kind_string) {
    census.characters += content.get<std::string>().size();
  }
  if (name == "Rank") census.sum_of_ranks += content.get<int>();
}

void count_element(const Json::Value& element, const std::string& name, Census& census) {
  ++census.elements;
  if (element.kind() != Json::kind_map) return count_content(element, name, census);
  for (const auto& [key, value] : element.map()) {
    if (key.empty()) {
      count_content(value, name, census);
    } else {
      ++census.attributes;
    }
  }
}

void count_children(const Json::Object& children, Census& census) {
  for (const auto& [name, value] : children) {
    if (value.kind() != Json::kind_array) {
      count_element(value, name, census);
    } else {
      for (const Json::Value& item : value.array()) count_element(item, name, census);
    }
  }
}

// The peer has every text as a string.
class PeerCount : public TiXmlVisitor {
 public:
  using TiXmlVisitor::Visit;

  explicit PeerCount(Census& census) : census_(census) {}

  bool VisitEnter(const TiXmlElement& element, const TiXmlAttribute* attribute) override {
    ++census_.elements;
    for (; attribute != nullptr; attribute = attribute->Next()) ++census_.attributes;
    return element.Value() != nullptr;
  }

  bool Visit(const TiXmlText& text) override {
    const std::string name = text.Parent()->Value();
    if (name == "Rank") {
      census_.sum_of_ranks += std::atol(text.Value());
    } else if (name != "Zoom" && name != "Checked") {
      census_.characters += text.ValueStr().size();
    }
    return true;
  }

 private:
  Census& census_;
};

// --- The candidates

void read_document(const std::string& text, std::size_t slice, Json::Value& root) {
  Json::XmlReader reader(root);
  const char* begin = text.data();
  const char* const end = begin + text.size();
  bool is_closed = false;
  while (!is_closed && begin != end) {
    is_closed = reader.read(begin, std::min(begin + slice, end));
  }
  require(is_closed, "the document is not read to its end");
}

void parse_by_peer(const std::string& text, TiXmlDocument& document) {
  document.Parse(text.c_str(), nullptr, TIXML_ENCODING_UTF8);
  require(!document.Error(), "the peer refuses the document");
}

void print_by_peer(const TiXmlDocument& document, std::string& text) {
  TiXmlPrinter printer;
  printer.SetStreamPrinting();
  document.Accept(&printer);
  text = printer.Str();
}

void write_document(const Json::Value& root, std::string& text) {
  std::ostringstream out;
  write_xml(root, out);
  text = out.str();
}

// --- Timing

double seconds(const std::function<void()>& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// Trees are made and destroyed outside of what is timed.
double time_reading(const std::string& text, std::size_t slice) {
  Json::Value root;
  return seconds([&] { read_document(text, slice, root); });
}

double time_peer(const std::string& text) {
  TiXmlDocument document;
  return seconds([&] { parse_by_peer(text, document); });
}

struct Candidate {
  const char* name;
  std::size_t bytes;
  std::function<double()> run;
  double best = 1e9;
};

double rate(const Candidate& candidate) { return double(candidate.bytes) / 1e6 / candidate.best; }

// The last candidate is the peer.
void compare(std::vector<Candidate> candidates) {
  for (int round = 0; round < rounds; ++round) {
    for (Candidate& candidate : candidates) {
      candidate.best = std::min(candidate.best, candidate.run());
    }
  }
  for (const Candidate& candidate : candidates) {
    std::printf("%-32s %8.1f MB/s %8.2f times the peer\n", candidate.name, rate(candidate),
                rate(candidate) / rate(candidates.back()));
  }
}

std::size_t used_memory() { return mallinfo2().uordblks; }

template <class Make>
void print_memory(const char* name, const Census& census, Make make) {
  const std::size_t before = used_memory();
  make();
  const std::size_t nodes = census.elements + census.attributes;
  std::printf("%-32s %8.1f bytes per element or attribute\n", name,
              double(used_memory() - before) / double(nodes));
}

}  // namespace

int main() {
  const std::string text = make_document();
  Json::Value root;
  TiXmlDocument document;
  read_document(text, text.size(), root);
  parse_by_peer(text, document);
  Census census;
  Census peer_census;
  count_children(root.map(), census);
  PeerCount peer_count(peer_census);
  document.Accept(&peer_count);
  require(census == peer_census, "reader and peer see different documents");

  std::string written;
  std::string printed;
  write_document(root, written);
  print_by_peer(document, printed);
  Json::Value again;
  read_document(written, slice_size, again);
  require(again == root, "what is written reads differently");

  std::printf("%.1f MB, %zu elements, %zu attributes\n", double(text.size()) / 1e6, census.elements,
              census.attributes);
  compare({{"read, one slice", text.size(), [&] { return time_reading(text, text.size()); }},
           {"read, slices of 64 KiB", text.size(), [&] { return time_reading(text, slice_size); }},
           {"TinyXML parse", text.size(), [&] { return time_peer(text); }}});
  compare(
      {{"write", written.size(), [&] { return seconds([&] { write_document(root, written); }); }},
       {"TinyXML print", printed.size(),
        [&] { return seconds([&] { print_by_peer(document, printed); }); }}});
  again = Json::Value();
  print_memory("memory of the value", census, [&] { read_document(text, text.size(), again); });
  return 0;
}
