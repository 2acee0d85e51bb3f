#include "lyrics/AppleMusicLyricsService.h"

#include "base/DebugLog.h"
#include "base/RunLoop.h"
#include "lyrics/TTMLParserDelegate.h"
#include "platform/Platform.h"

#include <expat.h>

#include <algorithm>
#include <cstring>
#include <limits>
#include <memory>
#include <type_traits>

namespace {

// Where the text that entities expand to is that much longer than the document, it is not to be read.
constexpr unsigned long long entityThresholdBytes = 65'536;
constexpr float maximumAmplification = 4;

/// An element's or an attribute's name without its namespace prefix.
QString localName(const XML_Char* name)
{
    const char* const colon = std::strrchr(name, ':');
    return QString::fromUtf8(colon != nullptr ? colon + 1 : name);
}

QString attribute(const XML_Char** attributes, const char* name)
{
    for (; *attributes != nullptr; attributes += 2) { // names and values by turns
        if (qstrcmp(attributes[0], name) == 0) {
            return QString::fromUtf8(attributes[1]);
        }
    }
    return {};
}

void XMLCALL startElement(void* delegate, const XML_Char* name, const XML_Char** attributes)
{
    static_cast<TTMLParserDelegate*>(delegate)->startElement(localName(name), attribute(attributes, "begin"),
                                                             attribute(attributes, "end"));
}

void XMLCALL endElement(void* delegate, const XML_Char* name)
{
    static_cast<TTMLParserDelegate*>(delegate)->endElement(localName(name));
}

void XMLCALL characters(void* delegate, const XML_Char* text, int size)
{
    static_cast<TTMLParserDelegate*>(delegate)->characters(QString::fromUtf8(text, size));
}

using Parser = std::unique_ptr<std::remove_pointer_t<XML_Parser>, decltype(&XML_ParserFree)>;

Parser makeParser(TTMLParserDelegate& delegate)
{
    Parser parser(XML_ParserCreate("UTF-8"), &XML_ParserFree);
    XML_SetUserData(parser.get(), &delegate);
    XML_SetElementHandler(parser.get(), startElement, endElement);
    XML_SetCharacterDataHandler(parser.get(), characters);
    XML_SetBillionLaughsAttackProtectionActivationThreshold(parser.get(), entityThresholdBytes);
    XML_SetBillionLaughsAttackProtectionMaximumAmplification(parser.get(), maximumAmplification);
    return parser;
}

} // namespace

AppleMusicLyricsService& AppleMusicLyricsService::shared()
{
    static auto* const instance = new AppleMusicLyricsService(Platform::current().runLoop);
    return *instance;
}

void AppleMusicLyricsService::fetch(const LyricsRequest& /*request*/, QObject* context, Completion completion)
{
    static_assert(!isEnabled, "the request to the catalogue is not there yet");
    _runLoop.after(0, context, [completion = std::move(completion)] { completion(std::nullopt); });
}

std::optional<QList<SyncedLyric>> AppleMusicLyricsService::parseTTML(const QString& ttml)
{
    TTMLParserDelegate delegate;
    const Parser parser = makeParser(delegate);
    const QByteArray bytes = ttml.toUtf8();
    const int size = static_cast<int>(std::min<qsizetype>(bytes.size(), std::numeric_limits<int>::max()));
    if (XML_Parse(parser.get(), bytes.constData(), size, XML_TRUE) != XML_STATUS_OK) {
        dlog(QStringLiteral("Lyrics: XMLParser failed: %1, line %2")
                 .arg(QString::fromUtf8(XML_ErrorString(XML_GetErrorCode(parser.get()))))
                 .arg(XML_GetCurrentLineNumber(parser.get())));
        return std::nullopt;
    }
    return delegate.lines().isEmpty() ? std::nullopt : std::optional(delegate.lines());
}
