#pragma once

#include "lyrics/SyncedLyric.h"

/// Builds lines with timed words from the events of an XML parser that reads a TTML document.
class TTMLParserDelegate
{
public:
    /// `name` is that of the element without its namespace prefix; `begin` and `end` are its attributes of
    /// these names, empty where it has none.
    void startElement(QStringView name, QStringView begin, QStringView end);
    void characters(QStringView text);
    void endElement(QStringView name);

    /// The lines that have ended so far, in the order of the document.
    const QList<SyncedLyric>& lines() const { return _lines; }

    /// Seconds of a time such as "1:02:03.5", "2:03.5" or "3.5s"; none for anything else.
    static std::optional<double> parseTime(QStringView text);

private:
    void endWord();
    void endLine();

    QList<SyncedLyric> _lines;
    bool _inLine = false;
    double _lineStart = 0; ///< seconds
    QList<LyricWord> _wordsThisLine;
    QString _lineTextBuffer;
    bool _inWord = false;
    double _wordStart = 0; ///< seconds
    double _wordEnd = 0;   ///< seconds
    QString _wordTextBuffer;
};
