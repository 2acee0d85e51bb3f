#include "updates/VersionComparison.h"

#include <QList>
#include <QStringView>

#include <algorithm>

namespace {

enum class Kind { number, separator, dash, text };

struct Part {
    Kind kind = Kind::text;
    QStringView text;
};

Kind kindOf(QChar c)
{
    if (c >= u'0' && c <= u'9') {
        return Kind::number;
    }
    if (c == u'-') {
        return Kind::dash;
    }
    return c.isPunct() || c.isSpace() ? Kind::separator : Kind::text;
}

/// Runs of digits and of letters, and each separator by itself.
QList<Part> parts(QStringView version)
{
    QList<Part> list;
    for (qsizetype i = 0; i < version.size(); ++i) {
        const Kind kind = kindOf(version[i]);
        const bool goesOn = !list.isEmpty() && list.constLast().kind == kind && kind != Kind::separator;
        const qsizetype start = goesOn ? i - list.constLast().text.size() : i;
        if (goesOn) {
            list.removeLast();
        }
        list.append({kind, version.sliced(start, i + 1 - start)});
    }
    return list;
}

bool isNumeric(const Part& part)
{
    return part.kind == Kind::number || part.kind == Kind::separator;
}

qsizetype numericLength(const QList<Part>& list)
{
    return std::find_if_not(list.begin(), list.end(), isNumeric) - list.begin();
}

/// Gives the shorter one the zeros that the other has or has more of: "2b1" is read as "2.0b1" beside "2.0".
void balance(QList<Part>& list, const QList<Part>& other)
{
    for (qsizetype i = numericLength(list); i < numericLength(other); ++i) {
        const Part& wanted = other[i];
        list.insert(i, wanted.kind == Kind::number ? Part{Kind::number, u"0"} : wanted);
    }
}

/// Of any length, without leading zeros.
int compareNumbers(QStringView a, QStringView b)
{
    const auto significant = [](QStringView digits) {
        const auto* const first =
            std::find_if(digits.begin(), digits.end(), [](QChar c) { return c != u'0'; });
        return digits.sliced(first - digits.begin());
    };
    a = significant(a);
    b = significant(b);
    return a.size() != b.size() ? (a.size() < b.size() ? -1 : 1) : a.compare(b);
}

/// Numbers are above separators, and both above what marks a version that comes before the release.
int rank(Kind kind)
{
    switch (kind) {
    case Kind::number:
        return 3;
    case Kind::separator:
        return 2;
    case Kind::dash:
        return 1;
    case Kind::text:
        return 0;
    }
    Q_UNREACHABLE();
}

int compareParts(const Part& a, const Part& b)
{
    if (a.kind != b.kind) {
        return rank(a.kind) - rank(b.kind);
    }
    switch (a.kind) {
    case Kind::number:
        return compareNumbers(a.text, b.text);
    case Kind::text:
        return a.text.compare(b.text);
    case Kind::separator:
    case Kind::dash:
        return 0;
    }
    Q_UNREACHABLE();
}

/// Whether what a version goes on with makes it the newer one.
bool raises(const Part& part)
{
    return isNumeric(part);
}

} // namespace

int compareVersions(const QString& a, const QString& b)
{
    QList<Part> left = parts(a);
    QList<Part> right = parts(b);
    balance(left, right);
    balance(right, left);
    for (qsizetype i = 0; i < std::min(left.size(), right.size()); ++i) {
        if (const int order = compareParts(left[i], right[i])) {
            return order;
        }
    }
    if (left.size() == right.size()) {
        return 0;
    }
    const bool isLeftLonger = left.size() > right.size();
    const Part& next = isLeftLonger ? left[right.size()] : right[left.size()];
    return isLeftLonger == raises(next) ? 1 : -1;
}
