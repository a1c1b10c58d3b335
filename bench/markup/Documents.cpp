#include "Documents.h"

#include <array>
#include <random>

namespace MarkupBench {

namespace {

/// Makes up words and sentences from a fixed seed.
class Writer
{
public:
    int below(int limit) { return int(m_Random() % unsigned(limit)); }

    QString word()
    {
        static const std::array<const char *, 48> plain = {
            "the",     "a",      "of",       "minister", "said",     "on",       "Tuesday", "that",
            "budget",  "talks",  "will",     "resume",   "after",    "weeks",    "without", "result",
            "police",  "report", "two",      "people",   "injured",  "when",     "train",   "left",
            "station", "north",  "council",  "voted",    "against",  "plan",     "new",     "bridge",
            "rain",    "is",     "expected", "across",   "region",   "tomorrow", "shares",  "fell",
            "sharply", "as",     "traders",  "reacted",  "interest", "rates",    "late",    "evening"};
        static const std::array<const char *, 14> rare = {
            "Málaga", "Düsseldorf", "Łódź", "garçon",  "Tromsø",     "Ångström",   "Αθήνα",
            "Москва", "東京",       "서울", "القاهرة", "\U0001F3A5", "\U0001F4FA", "\U00020000\U00020001"};
        return QString::fromUtf8(below(25) == 0 ? rare[std::size_t(below(rare.size()))]
                                                : plain[std::size_t(below(plain.size()))]);
    }

    QString words(int count)
    {
        QString text = word();
        for (int i = 1; i < count; ++i)
            text += QLatin1Char(' ') + word();
        return text;
    }

    QString paragraph()
    {
        QString text = QStringLiteral("<p>");
        for (int sentences = 1 + below(4); sentences > 0; --sentences) {
            text += words(6 + below(16));
            switch (below(8)) {
            case 0:
                text += QStringLiteral(" <b>%1</b>").arg(words(2));
                break;
            case 1:
                text += QStringLiteral(" <a idref=\"%1\">%2</a>").arg(below(1000)).arg(words(3));
                break;
            case 2:
                text += QStringLiteral(" &amp; ") + words(2);
                break;
            default:
                break;
            }
            text += QStringLiteral(". ");
        }
        return text + QStringLiteral("</p>\n");
    }

    QString story(int bytes)
    {
        QString text =
            QStringLiteral("<zeko:story xmlns:zeko=\"urn:zeko\"><zeko:head><zeko:meta rate=\"160\" wire=\"no\"/>"
                           "<storyid>00a1b2c3:00d4e5f6:4a5b6c7d</storyid></zeko:head><fields>\n");
        for (const char *id : {"title", "presenter", "writer", "create-date", "tape-number"})
            text += QStringLiteral("<string id=\"%1\">%2</string>\n").arg(QLatin1String(id), words(3));
        text += QStringLiteral("</fields><body>\n");
        while (text.size() * 2 < bytes)
            text += paragraph();
        return text + QStringLiteral("</body></zeko:story>");
    }

    QString form()
    {
        QString text = QStringLiteral("<zeko:form xmlns:zeko=\"urn:zeko\" align=\"right\" lines=\"200\">");
        for (int row = 0; row < 200; ++row) {
            text += QStringLiteral("<zeko:row height=\"2\">");
            for (int cell = 0; cell < 8; ++cell)
                text +=
                    QStringLiteral("<zeko:cell idref=\"field-%1\" ro=\"%2\" length=\"%3\" style=\"%4\" align=\"%5\" "
                                   "llength=\"%6\">%7</zeko:cell>")
                        .arg(row * 8 + cell)
                        .arg(QLatin1String(below(4) ? "no" : "yes"))
                        .arg(8 + below(40) * 4)
                        .arg(QLatin1String(below(2) ? "b" : "i"))
                        .arg(QLatin1String(below(2) ? "right" : "center"))
                        .arg(4 + below(10) * 4)
                        .arg(words(1 + below(2)));
            text += QStringLiteral("</zeko:row>");
        }
        return text + QStringLiteral("</zeko:form>");
    }

    QString flat()
    {
        QString text = QStringLiteral("<list>");
        for (int i = 0; i < 100000; ++i)
            text += QStringLiteral("<item>%1</item>").arg(word());
        return text + QStringLiteral("</list>");
    }

private:
    std::mt19937 m_Random{20070401};
};

} // namespace

const std::vector<Document> &documents()
{
    static const std::vector<Document> all = [] {
        Writer writer;
        std::vector<Document> made = {{"story-small", writer.story(4 << 10), {}},
                                      {"story-large", writer.story(2 << 20), {}},
                                      {"form", writer.form(), {}},
                                      {"flat", writer.flat(), {}}};
        for (Document &document : made)
            document.utf8 = document.text.toUtf8();
        return made;
    }();
    return all;
}

} // namespace MarkupBench
