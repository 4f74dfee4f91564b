#pragma once

#include "ZellNetLink/IProto.h"

#include <memory>

namespace ZellNetLink {

// JSON with access by path. One object is used by one thread at a time.
class ZELLNETLINK_API CRapidJsonProto : public IProto
{
public:
    CRapidJsonProto();
    ~CRapidJsonProto() override;

    // Parses the text; false if it is not JSON, and the object is then empty.
    bool set_str(std::string text) override;
    // The whole object, compact, members in their order and numbers in their form. The argument is 0.
    std::string get_str(int reserved) override;
    // The node at the path as text, empty if there is none.
    std::string get_node_str(std::string path, int reserved) override;
    // Number of entries of the list at the path, 0 if there is none.
    int get_cnt(std::string path) override;
    // The value at the path, or the fallback if nothing of that kind is there.
    std::string get_v(std::string path, std::string fallback) override;
    int get_int_v(std::string path, int fallback) override;
    float get_float_v(std::string path, float fallback) override;
    bool get_bool_v(std::string path, bool fallback) override;
    // Sets the value at the path, creating what is missing on the way.
    bool set_bool_v(std::string path, bool value) override;
    bool set_v(void* node, std::string name, int value) override;
    bool set_v(void* node, std::string name, std::string value) override;
    bool set_v(std::string path, int value) override;
    bool set_v(std::string path, std::string value) override;
    bool set_float_v(std::string path, float value) override;
    // An opaque handle of the node at the path, null if there is none. Any change of the object voids it.
    void* get_node(std::string path) override;
    // Adds a member under the node and gives the new node.
    void* add_v(void* node, std::string name, int value) override;
    void* add_v(void* node, std::string name, std::string value) override;
    bool add_v(std::string path, std::string name, int value) override;
    bool add_v(std::string path, std::string name, std::string value) override;
    // Adds an entry to the list called name under the node and gives the new entry.
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
