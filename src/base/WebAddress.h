#pragma once

#include <QList>
#include <QString>
#include <QUrl>

#include <optional>
#include <utility>

/// The items of an address's query, names and values as plain text, in the order in which they are sent.
using QueryItems = QList<std::pair<QString, QString>>;

/// The address `path` of a service ("https://host[:port]") with a query in which everything but letters,
/// digits and "-._~" is percent-encoded. None when the service is no web address.
std::optional<QUrl> webAddress(const QString& service, const QString& path, const QueryItems& items = {});

/// Whether an address is an absolute one with the scheme http or https.
bool isWebAddress(const QUrl& address);
