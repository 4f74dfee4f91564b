#pragma once

#include "ZellNetLink/RapidJsonProto.h"

#include <string>
#include <utility>

namespace FetchyardBussiness::details {

// Reads a request below one prefix of its paths. What is absent reads as -1, an empty text or false.
class RequestReader
{
public:
    RequestReader(ZellNetLink::CRapidJsonProto& document, std::string prefix)
        : document_(document), prefix_(std::move(prefix))
    {
    }

    std::string Text(const std::string& key) const { return document_.get_v(prefix_ + key, ""); }
    int Number(const std::string& key) const { return document_.get_int_v(prefix_ + key, kAbsent); }
    int NumberOr(const std::string& key, int replacement) const
    {
        const int number = Number(key);
        return number == kAbsent ? replacement : number;
    }
    bool Flag(const std::string& key) const { return document_.get_bool_v(prefix_ + key, false); }
    // A flag kept as a number: true unless it is 0, so also when it is absent.
    bool NumberFlag(const std::string& key) const { return Number(key) != 0; }
    int Count(const std::string& key) const { return document_.get_cnt(prefix_ + key); }
    // The node as JSON text, empty if there is none.
    std::string Node(const std::string& key) const { return document_.get_node_str(prefix_ + key, 0); }

    RequestReader Below(const std::string& key) const { return {document_, prefix_ + key + "/"}; }
    // Element of a list, from 1.
    RequestReader Element(const std::string& list, int number) const
    {
        return Below(list + "[" + std::to_string(number) + "]");
    }

    static constexpr int kAbsent = -1;

private:
    ZellNetLink::CRapidJsonProto& document_;
    std::string prefix_;
};

}  // namespace FetchyardBussiness::details
