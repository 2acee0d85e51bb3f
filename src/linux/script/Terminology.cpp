#include "linux/script/Terminology.h"

#include <QHash>

#include <algorithm>
#include <array>

using namespace Qt::Literals::StringLiterals;

namespace {

using Kind = Term::Kind;

constexpr std::array properties = {
    "name"_L1,
    "artist"_L1,
    "album"_L1,
    "album artist"_L1,
    "composer"_L1,
    "genre"_L1,
    "year"_L1,
    "duration"_L1,
    "rating"_L1,
    "loved"_L1,
    "disliked"_L1,
    "favorited"_L1,
    "track number"_L1,
    "track count"_L1,
    "disc number"_L1,
    "played count"_L1,
    "database id"_L1,
    "persistent id"_L1,
    "id"_L1,
    "index"_L1,
    "artwork url"_L1,
    "spotify url"_L1,
    "current track"_L1,
    "current playlist"_L1,
    "player state"_L1,
    "player position"_L1,
    "sound volume"_L1,
    "mute"_L1,
    "shuffling"_L1,
    "shuffle enabled"_L1,
    "shuffle mode"_L1,
    "repeating"_L1,
    "song repeat"_L1,
    "version"_L1,
    "frontmost"_L1,
    "visible"_L1,
    "unix id"_L1,
    "bundle identifier"_L1,
    "length"_L1,
    "running"_L1,
};

constexpr std::array commands = {
    "play"_L1,       "pause"_L1,          "playpause"_L1,  "stop"_L1,         "resume"_L1,
    "next track"_L1, "previous track"_L1, "back track"_L1, "fast forward"_L1, "rewind"_L1,
    "keystroke"_L1,  "key code"_L1,       "activate"_L1,   "launch"_L1,       "quit"_L1,
};

constexpr std::array constants = {
    "playing"_L1,      "paused"_L1,     "stopped"_L1,     "fast forwarding"_L1, "rewinding"_L1,
    "command down"_L1, "shift down"_L1, "option down"_L1, "control down"_L1,    "missing value"_L1,
    "off"_L1,          "one"_L1,        "all"_L1,
};

struct ClassName {
    QLatin1StringView one;
    QLatin1StringView many;
    QLatin1StringView name;
};

constexpr std::array classes = {
    ClassName{"item"_L1, "items"_L1, "item"_L1},
    ClassName{"track"_L1, "tracks"_L1, "track"_L1},
    ClassName{"playlist"_L1, "playlists"_L1, "playlist"_L1},
    ClassName{"process"_L1, "processes"_L1, "process"_L1},
    ClassName{"application process"_L1, "application processes"_L1, "process"_L1},
};

using Vocabulary = QHash<QString, Term>;

void insert(Vocabulary& vocabulary, Kind kind, QLatin1StringView phrase, QLatin1StringView name)
{
    const int words = static_cast<int>(std::count(phrase.begin(), phrase.end(), ' ')) + 1;
    vocabulary.insert(phrase, {kind, name, words});
}

Vocabulary makeVocabulary()
{
    Vocabulary vocabulary;
    for (const QLatin1StringView phrase : properties) {
        insert(vocabulary, Kind::property, phrase, phrase);
    }
    for (const QLatin1StringView phrase : commands) {
        insert(vocabulary, Kind::command, phrase, phrase);
    }
    for (const QLatin1StringView phrase : constants) {
        insert(vocabulary, Kind::constant, phrase, phrase);
    }
    for (const ClassName& className : classes) {
        insert(vocabulary, Kind::elementClass, className.one, className.name);
        insert(vocabulary, Kind::elementClasses, className.many, className.name);
    }
    return vocabulary;
}

} // namespace

std::optional<Term> termAt(std::span<const Token> tokens)
{
    static const Vocabulary vocabulary = makeVocabulary();
    constexpr size_t mostWords = 2;
    QString phrase;
    std::optional<Term> longest;
    for (const Token& token : tokens.first(std::min(mostWords, tokens.size()))) {
        if (token.kind != Token::Kind::word) {
            break;
        }
        phrase += phrase.isEmpty() ? token.spelling : u' ' + token.spelling;
        if (const auto found = vocabulary.constFind(phrase); found != vocabulary.cend()) {
            longest = *found;
        }
    }
    return longest;
}
