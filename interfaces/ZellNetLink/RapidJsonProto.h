#pragma once

#include "ZellNetLink/IProto.h"

#include <memory>

namespace ZellNetLink {

// JSON with access by path. One object is used by one thread at a time.
//
// Paths: a name without an index is the member itself, a list as a whole if it is one. A bare number as a
// name is an index from 0 where it meets a list ("ContentLine/0/Content") and a name where it meets an
// object. An index leads nowhere on what is no list, a name nowhere on what is no object. Lists within lists
// take an index each ("Rows[2][1]"). The empty path is the root.
//
// Writing: what is missing on the way is made, an object for a name and a list for an index; null counts as
// missing. A list grows to the index, with null entries between, by 65,536 at most, and so do all lists
// together that one call makes. What is there in the way and of the wrong kind is never replaced: the call
// returns false (or null) and changes nothing, while the value at the end of the path is replaced, whatever
// it was. Nothing is made deeper than 512 objects and lists. Texts and names that are not UTF-8 are repaired
// with U+FFFD. Under a null handle nothing is set or added.
class ZELLNETLINK_API CRapidJsonProto : public IProto
{
public:
    CRapidJsonProto();
    ~CRapidJsonProto() override;

    // Parses the text; false if it is not JSON, and the object is then empty ("{}"). Refused as well: texts
    // that are not UTF-8 or hold escaped halves of surrogate pairs, numbers beyond a double, and more than
    // 512 objects and lists within each other. Any kind of value may be the root. A byte-order mark is passed
    // over. Of members of one name in one object the last counts, at the place of the first.
    bool set_str(std::string text) override;
    // The whole object, compact, members in their order and numbers in their form. The argument is 0.
    std::string get_str(int reserved) override;
    // The node at the path as JSON text (a string in its quotes, null as "null"), empty if there is none.
    std::string get_node_str(std::string path, int reserved) override;
    // Number of entries of the list at the path; 0 if there is none or something else is there.
    int get_cnt(std::string path) override;
    // The value at the path, or the fallback if nothing of that kind is there: get_v takes only strings,
    // get_bool_v only true and false, the other two only numbers. get_int_v cuts a fraction off and gives the
    // low 32 bits of what is larger (4294967295 is -1); a number with a fraction or an exponent from 2^63 on
    // has none and gives the fallback, and so does one that is too large for get_float_v. One that is too
    // small to tell from 0 is 0.
    std::string get_v(std::string path, std::string fallback) override;
    int get_int_v(std::string path, int fallback) override;
    float get_float_v(std::string path, float fallback) override;
    bool get_bool_v(std::string path, bool fallback) override;
    // Sets the value at the path, creating what is missing on the way. Of the calls with a node, name is a
    // path from there. A float that is no number is refused.
    bool set_bool_v(std::string path, bool value) override;
    bool set_v(void* node, std::string name, int value) override;
    bool set_v(void* node, std::string name, std::string value) override;
    bool set_v(std::string path, int value) override;
    bool set_v(std::string path, std::string value) override;
    bool set_float_v(std::string path, float value) override;
    // An opaque handle of the node at the path, null if there is none. It holds until the node is replaced or
    // the object is cleared or parsed anew; additions elsewhere do not move it.
    void* get_node(std::string path) override;
    // Adds a member under the node and gives the new node; null if the member is there already or the node is
    // no object. The name is taken as it stands. The path of the other two is that of the node.
    void* add_v(void* node, std::string name, int value) override;
    void* add_v(void* node, std::string name, std::string value) override;
    bool add_v(std::string path, std::string name, int value) override;
    bool add_v(std::string path, std::string name, std::string value) override;
    // Adds an entry to the list called name under the node, or to the node itself for an empty name, and
    // gives the new entry; null if something else has that place.
    void* add_list_v(void* node, std::string name, int value) override;
    void* add_list_v(void* node, std::string name, std::string value) override;
    bool add_list_v(std::string path, std::string name, int value) override;
    bool add_list_v(std::string path, std::string name, std::string value) override;
    // A copy that the caller owns. The argument is 0.
    IProto* copy(int reserved) override;
    bool clear() override;

private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

}  // namespace ZellNetLink
