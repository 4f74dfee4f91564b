#include "FuzzTarget.h"
#include "ZellNetLink/RapidJsonProto.h"

#include <algorithm>
#include <memory>

using ZellNetLink::CRapidJsonProto;
using ZellNetLink::IProto;

namespace {

// Reads all that a path can give.
void Read(IProto& json, const std::string& path)
{
    json.get_v(path, "");
    json.get_int_v(path, -1);
    json.get_float_v(path, 0);
    json.get_bool_v(path, false);
    const int count = json.get_cnt(path);
    fuzz::Expect(count >= 0, "a list has no negative count");
    for (int i = 1; i <= std::min(count, 3); ++i)
        fuzz::Expect(json.get_node(path + "[" + std::to_string(i) + "]") != nullptr,
                     "what is counted is there");
    fuzz::Expect(json.get_node(path + "[" + std::to_string(count + 1) + "]") == nullptr,
                 "nothing stands behind the end of a list");
    const std::string node = json.get_node_str(path, 0);
    fuzz::Expect((json.get_node(path) == nullptr) == node.empty(), "a node that is there has a text");
    CRapidJsonProto alone;
    fuzz::Expect(node.empty() || alone.set_str(node), "a node's text is JSON");
}

void Write(IProto& json, const std::string& path)
{
    json.set_v(path, 1);
    json.set_v(path + "/a", std::string("b"));
    json.set_v(path + "[2]", 3);
    json.set_bool_v(path + "/c[1]/d", true);
    json.set_float_v(path + "/0", 0.5F);
    json.add_v(path, "m", 1);
    json.add_v(json.get_node(path), path, path);
    json.add_list_v(path, "l", 2);
    json.add_list_v(json.get_node(path), "", path);
}

}  // namespace

// Up to the first line feed a path, behind it a text.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string input = fuzz::Text(data, size);
    const std::size_t end = input.find('\n');
    const std::string path = input.substr(0, end);
    CRapidJsonProto json;
    const bool is_json = json.set_str(end == std::string::npos ? input : input.substr(end + 1));
    const std::string before = json.get_str(0);
    fuzz::Expect(is_json || before == "{}", "a text that is refused leaves an empty object");
    Read(json, path);
    fuzz::Expect(json.get_str(0) == before, "reading changes nothing");
    const std::unique_ptr<IProto> copy(json.copy(0));
    Write(json, path);
    CRapidJsonProto again;
    fuzz::Expect(again.set_str(json.get_str(0)), "what is written can be read");
    fuzz::Expect(again.get_str(0) == json.get_str(0), "what is read back is the same");
    fuzz::Expect(copy->get_str(0) == before, "a copy does not follow");
    return 0;
}
