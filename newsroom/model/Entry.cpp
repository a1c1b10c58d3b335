#include <quire/newsroom/model/Entry.h>

#include <QStringList>

namespace Newsroom {

namespace {

struct FlagWord
{
    const char *word;
    qint32 Flags::*member;
    qint32 bits;
};

const FlagWord flagWords[] = {
    {"indexed", &Flags::word3, Flags::Indexed3},   {"locked", &Flags::word1, Flags::Locked1},
    {"locked-e", &Flags::word3, Flags::LockedE3},  {"confirm-edit", &Flags::word1, Flags::ConfirmEdit1},
    {"inverted", &Flags::word1, Flags::Inverted1}, {"sorted", &Flags::word2, Flags::Sorted2},
    {"live", &Flags::word3, Flags::LiveRefresh3}};

QString withoutLeadingDot(const QString &path)
{
    return path.startsWith(QLatin1Char('.')) ? path.mid(1) : path;
}

} // namespace

bool Flags::set(const QString &word)
{
    for (const FlagWord &flag : flagWords) {
        if (word == QLatin1String(flag.word)) {
            this->*flag.member |= flag.bits;
            if (flag.bits == LockedE3 && flag.member == &Flags::word3)
                word1 |= Locked1;
            return true;
        }
    }
    return false;
}

QString Flags::toString() const
{
    QStringList words;
    for (const FlagWord &flag : flagWords) {
        if ((this->*flag.member & flag.bits) != 0)
            words.append(QLatin1String(flag.word));
    }
    return words.join(QLatin1Char(' '));
}

QString Entry::leafName() const
{
    return path == QLatin1String(".") ? path : path.mid(path.lastIndexOf(QLatin1Char('.')) + 1);
}

bool isComponentName(const QString &name)
{
    if (name.isEmpty() || name.front().isSpace() || name.back().isSpace())
        return false;
    for (int i = 0; i < name.size(); ++i) {
        const QChar c = name.at(i);
        if (c == QLatin1Char('.') || c.category() == QChar::Other_Control)
            return false;
        if (c.isHighSurrogate() && i + 1 < name.size() && name.at(i + 1).isLowSurrogate())
            ++i;
        else if (c.isSurrogate())
            return false;
    }
    return true;
}

QString foldedPath(const QString &path)
{
    return withoutLeadingDot(path).toCaseFolded();
}

QString childPath(const QString &parent, const QString &leaf)
{
    const QString base = withoutLeadingDot(parent);
    return base.isEmpty() ? leaf : base + QLatin1Char('.') + leaf;
}

QString parentPath(const QString &path)
{
    const QString base = withoutLeadingDot(path);
    const int dot = base.lastIndexOf(QLatin1Char('.'));
    return dot < 0 ? QStringLiteral(".") : base.left(dot);
}

} // namespace Newsroom
