#include "FuzzTarget.h"
#include "ZellNetLink/XmlProto.h"

#include <algorithm>
#include <memory>

using ZellNetLink::CXmlProto;
using ZellNetLink::XmlNode;

namespace {

void Read(CXmlProto& xml, const std::string& path)
{
    xml.get_v(path, "");
    xml.get_int_v(path, -1);
    const int count = xml.get_cnt(path);
    fuzz::Expect(count >= 0, "elements have no negative count");
    for (int i = 1; i <= std::min(count, 3); ++i) {
        const std::string entry = path + "[" + std::to_string(i) + "]";
        fuzz::Expect(path.back() == ']' || path.back() == '/' || xml.get_cnt(entry) == 1,
                     "what is counted is there");
        xml.get_v(entry, "");
    }
}

std::string ThroughRecord(const std::string& text)
{
    XmlNode root("Root", "");
    root.AddSub(std::make_shared<XmlNode>("Text", text));
    CXmlProto xml;
    fuzz::Expect(xml.set_str(root.ToString(true)), "what is written can be read");
    return xml.get_v("/Root/Text", "absent");
}

}  // namespace

// Up to the first line feed a path, behind it a document; and all of it as a text within one.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string input = fuzz::Text(data, size);
    const std::size_t end = input.find('\n');
    CXmlProto xml;
    const bool is_xml = xml.set_str(end == std::string::npos ? input : input.substr(end + 1));
    fuzz::Expect(is_xml || xml.get_cnt("/Root") == 0, "a text that is refused leaves nothing");
    if (end != std::string::npos && end > 0)
        Read(xml, input.substr(0, end));
    const std::string once = ThroughRecord(input);
    fuzz::Expect(ThroughRecord(once) == once, "what was repaired stays as it is");
    return 0;
}
