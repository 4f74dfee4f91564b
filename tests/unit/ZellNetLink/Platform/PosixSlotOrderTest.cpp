#include "ZellNetLink/IProto.h"

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <cstring>
#include <string>

// Programs that were built before call through the slots, so their order is part of the interface.
namespace {

using std::string;
using ZellNetLink::IProto;

// A pointer to a virtual operation holds the place of its slot in the table, in bytes and plus one.
template <typename Operation>
std::size_t SlotOf(Operation operation)
{
    std::array<std::size_t, 2> words{};
    static_assert(sizeof(operation) == sizeof(words));
    std::memcpy(words.data(), &operation, sizeof(words));
    return (words[0] - 1) / sizeof(void*);
}

template <typename Result, typename... Arguments>
std::size_t SlotOfOverload(Result (IProto::*operation)(Arguments...))
{
    return SlotOf(operation);
}

TEST(JsonSlots, StandInTheOrderOfTheInterface)
{
    // The destructor has the first two.
    EXPECT_EQ(SlotOf(&IProto::set_str), 2U);
    EXPECT_EQ(SlotOf(&IProto::get_str), 3U);
    EXPECT_EQ(SlotOf(&IProto::get_node_str), 4U);
    EXPECT_EQ(SlotOf(&IProto::get_cnt), 5U);
    EXPECT_EQ(SlotOf(&IProto::get_v), 6U);
    EXPECT_EQ(SlotOf(&IProto::get_int_v), 7U);
    EXPECT_EQ(SlotOf(&IProto::get_float_v), 8U);
    EXPECT_EQ(SlotOf(&IProto::get_bool_v), 9U);
    EXPECT_EQ(SlotOf(&IProto::set_bool_v), 10U);
    EXPECT_EQ((SlotOfOverload<bool, void*, string, int>(&IProto::set_v)), 11U);
    EXPECT_EQ((SlotOfOverload<bool, void*, string, string>(&IProto::set_v)), 12U);
    EXPECT_EQ((SlotOfOverload<bool, string, int>(&IProto::set_v)), 13U);
    EXPECT_EQ((SlotOfOverload<bool, string, string>(&IProto::set_v)), 14U);
    EXPECT_EQ(SlotOf(&IProto::set_float_v), 15U);
    EXPECT_EQ(SlotOf(&IProto::get_node), 16U);
    EXPECT_EQ((SlotOfOverload<void*, void*, string, int>(&IProto::add_v)), 17U);
    EXPECT_EQ((SlotOfOverload<void*, void*, string, string>(&IProto::add_v)), 18U);
    EXPECT_EQ((SlotOfOverload<bool, string, string, int>(&IProto::add_v)), 19U);
    EXPECT_EQ((SlotOfOverload<bool, string, string, string>(&IProto::add_v)), 20U);
    EXPECT_EQ((SlotOfOverload<void*, void*, string, int>(&IProto::add_list_v)), 21U);
    EXPECT_EQ((SlotOfOverload<void*, void*, string, string>(&IProto::add_list_v)), 22U);
    EXPECT_EQ((SlotOfOverload<bool, string, string, int>(&IProto::add_list_v)), 23U);
    EXPECT_EQ((SlotOfOverload<bool, string, string, string>(&IProto::add_list_v)), 24U);
    EXPECT_EQ(SlotOf(&IProto::copy), 25U);
    EXPECT_EQ(SlotOf(&IProto::clear), 26U);
}

}  // namespace
