#include "linux/script/Keywords.h"

#include <QSet>

#include <algorithm>
#include <array>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr std::array keywords = {
    "and"_L1,    "app"_L1,   "application"_L1, "as"_L1,    "by"_L1,     "contains"_L1, "count"_L1,
    "div"_L1,    "does"_L1,  "else"_L1,        "end"_L1,   "equals"_L1, "error"_L1,    "every"_L1,
    "exit"_L1,   "false"_L1, "from"_L1,        "get"_L1,   "if"_L1,     "in"_L1,       "is"_L1,
    "it"_L1,     "mod"_L1,   "not"_L1,         "of"_L1,    "on"_L1,     "or"_L1,       "repeat"_L1,
    "return"_L1, "set"_L1,   "tell"_L1,        "then"_L1,  "times"_L1,  "to"_L1,       "true"_L1,
    "try"_L1,    "until"_L1, "using"_L1,       "where"_L1, "while"_L1,  "whose"_L1,    "with"_L1,
};

constexpr std::array ordinals = {"first"_L1, "second"_L1,  "third"_L1,  "fourth"_L1, "fifth"_L1,
                                 "sixth"_L1, "seventh"_L1, "eighth"_L1, "ninth"_L1,  "tenth"_L1};

} // namespace

std::optional<qlonglong> ordinalNumber(const QString& word)
{
    if (word == "last"_L1) {
        return -1;
    }
    const auto found = std::find(ordinals.begin(), ordinals.end(), word);
    return found == ordinals.end() ? std::nullopt : std::optional(found - ordinals.begin() + 1);
}

bool isKeyword(const QString& word)
{
    return std::find(keywords.begin(), keywords.end(), word) != keywords.end() || ordinalNumber(word);
}
