// The XML reader and writer beside a DOM library, on a document about many images. Both have to see
// the same document before anything is timed.
#include <tinyxml.h>
#include <vrelio/json/value.h>
#include <vrelio/json/write_xml.h>
#include <vrelio/json/xml_reader.h>

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <sstream>
#include <string>

#include "support/peer_comparison.h"

namespace {

constexpr std::size_t document_size = 20u << 20;
constexpr std::size_t slice_size = 64u << 10;

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

std::unique_ptr<Json::Value> read_document(const std::string& text, std::size_t slice) {
  auto root = std::make_unique<Json::Value>();
  Json::XmlReader reader(*root);
  const char* begin = text.data();
  const char* const end = begin + text.size();
  bool is_closed = false;
  while (!is_closed && begin != end) {
    is_closed = reader.read(begin, std::min(begin + slice, end));
  }
  require(is_closed, "the document is not read to its end");
  return root;
}

std::unique_ptr<TiXmlDocument> parse(const std::string& text) {
  auto document = std::make_unique<TiXmlDocument>();
  document->Parse(text.c_str(), nullptr, TIXML_ENCODING_UTF8);
  require(!document->Error(), "the peer refuses the document");
  return document;
}

std::string write_document(const Json::Value& root) {
  std::ostringstream out;
  write_xml(root, out);
  return out.str();
}

std::string print(const TiXmlDocument& document) {
  TiXmlPrinter printer;
  printer.SetStreamPrinting();
  document.Accept(&printer);
  return printer.Str();
}

// --- Comparing the documents

Census require_same_documents(const std::string& text) {
  const auto root = read_document(text, slice_size);
  Census census;
  count_children(root->map(), census);
  Census peer_census;
  PeerCount peer_count(peer_census);
  parse(text)->Accept(&peer_count);
  require(census == peer_census, "reader and peer see different documents");
  require(*read_document(write_document(*root), slice_size) == *root,
          "what is written reads differently");
  return census;
}

// --- Comparing the times

void compare_reading(const char* name, const std::string& text, std::size_t slice) {
  std::unique_ptr<Json::Value> ours;
  std::unique_ptr<TiXmlDocument> peer;
  compare(
      name, text.size(), [&] { ours = read_document(text, slice); }, [&] { peer = parse(text); });
}

void compare_reading_and_destroying(const std::string& text) {
  compare(
      "read in one slice and destroy", text.size(), [&] { read_document(text, text.size()); },
      [&] { parse(text); });
}

void compare_writing(const std::string& text) {
  const auto ours = read_document(text, text.size());
  const auto peer = parse(text);
  compare(
      "write", write_document(*ours).size(), [&] { write_document(*ours); }, [&] { print(*peer); });
}

void compare_memory(const std::string& text, const Census& census) {
  const std::size_t nodes = census.elements + census.attributes;
  print_memory(bytes_per_node([&] { return read_document(text, text.size()); }, nodes),
               bytes_per_node([&] { return parse(text); }, nodes));
}

}  // namespace

int main() {
  const std::string text = make_document();
  const Census census = require_same_documents(text);
  std::printf("%.1f MB, %zu elements, %zu attributes\n", static_cast<double>(text.size()) / 1e6,
              census.elements, census.attributes);
  print_comparison_head();
  compare_reading("read in one slice", text, text.size());
  compare_reading("read in slices of 64 KiB", text, slice_size);
  compare_reading_and_destroying(text);
  compare_writing(text);
  compare_memory(text, census);
}
