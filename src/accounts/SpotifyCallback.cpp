#include "accounts/SpotifyCallback.h"

#include "accounts/LoopbackServer.h"

#include <QUrlQuery>

namespace {

constexpr char page[] = R"(<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1">
<title>Pellar</title>
<style>
  :root { color-scheme: light dark; }
  body { font-family: system-ui, -apple-system, sans-serif; max-width: 480px; margin: 80px auto 0;
         padding: 0 24px; color: #2c241f; background: #fdfbf8; line-height: 1.5; }
  h1 { font-weight: 600; }
  p { color: #6e5a4a; }
  .ok { color: #2a8a3e; }
  @media (prefers-color-scheme: dark) {
    body { color: #f2ebe4; background: #1d1916; }
    p { color: #b8a698; }
    .ok { color: #5fc878; }
  }
</style>
</head>
<body>
<h1%1>%2</h1>
<p>You can close this tab and return to Pellar.</p>
</body>
</html>
)";

} // namespace

SpotifyCallback parseCallback(const QByteArray& requestLine)
{
    const QString target = QString::fromUtf8(requestLine).section(u' ', 1, 1);
    const QUrlQuery query(target.section(u'?', 1));
    const QString code = query.queryItemValue(QStringLiteral("code"), QUrl::FullyDecoded);
    return {.path = target.section(u'?', 0, 0), .code = code.isEmpty() ? std::nullopt : std::optional(code)};
}

QByteArray callbackReply(bool isConnected)
{
    const QString html = QString::fromUtf8(page).arg(
        isConnected ? QStringLiteral(" class=\"ok\"") : QString(),
        isConnected ? QStringLiteral("✓ Connected") : QStringLiteral("Connection failed"));
    return pageReply(html.toUtf8());
}

QByteArray formEncode(const QueryItems& items)
{
    constexpr char allowed[] = "!$&'()*+,/:;=?@"; // besides the letters, the digits and "-._~"
    QByteArrayList pairs;
    for (const auto& [name, value] : items) {
        pairs << QUrl::toPercentEncoding(name, allowed) + '=' + QUrl::toPercentEncoding(value, allowed);
    }
    return pairs.join('&');
}
