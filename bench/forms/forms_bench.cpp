// What forms and the values of story fields cost.
//
//   CachedForm         the last one of 100 forms from the cache
//   LockedHash         the same name in a QHash of 100 under a QMutex
//   ReadForm<N>        a form of N cells, 10 to a row, from its text
//   ParseForm<N>       its text as a tree, and nothing more
//   SearchForm<N>      the form, each row and cell searched from the beginning
//   DecodeDuration     a duration as people read it
//   PrintDuration      the same by the framework's own means, for which the kind of field is known
//
// All in one run. Then the bounds: a form from the cache takes at most a microsecond; reading a form costs at most
// twice what parsing it does, and 100 times as many cells take at most 250 times as long, since their tree does not fit
// into the processor's caches. The exit code tells whether they held.

#include <QHash>
#include <QMutex>
#include <QMutexLocker>

#include <benchmark/benchmark.h>

#include <memory>

#include <quire/Quire.h>
#include <quire/XML.h>
#include <quire/newsroom/Newsroom.h>

#include "../Comparison.h"
#include "fuzz/forms/FormChecks.h"

using namespace Quire;

namespace {

constexpr int formCount = 100;

QString formName(int number)
{
    return QStringLiteral("FORM-%1").arg(number, 3, 10, QLatin1Char('0'));
}

QString formText(int cells)
{
    QString text = QStringLiteral("<zeko:form length=80>");
    for (int cell = 0; cell < cells; ++cell) {
        if (cell % 10 == 0)
            text += QStringLiteral("<zeko:row style=b>");
        text += QStringLiteral("<zeko:cell idref=\"field-%1\" length=\"40\" align=\"right\" llength=\"24\">Field %1"
                               "</zeko:cell>")
                    .arg(cell);
        if (cell % 10 == 9 || cell + 1 == cells)
            text += QStringLiteral("</zeko:row>");
    }
    return text + QStringLiteral("</zeko:form>");
}

void CachedForm(benchmark::State &state)
{
    const QString name = formName(formCount - 1);
    for (auto _ : state)
        benchmark::DoNotOptimize(FormCache::getForm(name));
}

void LockedHash(benchmark::State &state)
{
    QMutex mutex;
    QHash<QString, int> numbers;
    for (int i = 0; i < formCount; ++i)
        numbers.insert(formName(i), i);
    const QString name = formName(formCount - 1);
    for (auto _ : state) {
        const QMutexLocker locker(&mutex);
        benchmark::DoNotOptimize(numbers.value(name));
    }
}

template<int cells>
void ReadForm(benchmark::State &state)
{
    const QString text = formText(cells);
    for (auto _ : state)
        benchmark::DoNotOptimize(FormData(QString(), text).m_Fields.size());
}

template<int cells>
void ParseForm(benchmark::State &state)
{
    const QString text = formText(cells);
    for (auto _ : state) {
        const std::unique_ptr<XML::Tag> tree(XML::Parser().Parse(text));
        benchmark::DoNotOptimize(tree->m_Child);
    }
}

template<int cells>
void SearchForm(benchmark::State &state)
{
    const QString text = formText(cells);
    for (auto _ : state)
        benchmark::DoNotOptimize(FormFuzz::fieldsBySearching(text).size());
}

void DecodeDuration(benchmark::State &state)
{
    const QString name = QStringLiteral("Tape-Time");
    const QString stored = QStringLiteral("3725");
    for (auto _ : state) {
        QString value = stored;
        DecodeAttribute(name, value);
        benchmark::DoNotOptimize(value.size());
    }
}

void PrintDuration(benchmark::State &state)
{
    const QString stored = QStringLiteral("3725");
    for (auto _ : state) {
        const int seconds = stored.toInt();
        const QString value = QString::asprintf("%d:%02d:%02d", seconds / 3600, seconds / 60 % 60, seconds % 60);
        benchmark::DoNotOptimize(value.size());
    }
}

/// Fetches the forms from a newsroom that has nothing else. False when that fails.
bool fillCache()
{
    QString newsroom = QStringLiteral("server BENCH\nuser ann password=secret\n");
    for (int i = 0; i < formCount; ++i)
        newsroom += QStringLiteral("form %1\n  %2\n").arg(formName(i), formText(20));
    const std::shared_ptr<Newsroom::Model> model = Newsroom::Model::fromText(newsroom);
    if (!model)
        return false;
    Newsroom::Server server(model);
    const Newsroom::Registration registration = server.registerClass();
    QuireCOM *session = QuireCOM::GetQuireCOM(true);
    bool complete = session->Connect(QStringLiteral("BENCH"), QStringLiteral("ann"), QStringLiteral("secret"), 0) == 0;
    for (int i = 0; i < formCount; ++i)
        complete = complete && FormCache::getForm(formName(i));
    QuireCOM::UnloadCOM();
    return complete;
}

} // namespace

BENCHMARK(CachedForm);
BENCHMARK(LockedHash);
BENCHMARK_TEMPLATE(ReadForm, 1000);
BENCHMARK_TEMPLATE(ParseForm, 1000);
BENCHMARK_TEMPLATE(SearchForm, 1000);
BENCHMARK_TEMPLATE(ReadForm, 100000);
BENCHMARK_TEMPLATE(ParseForm, 100000);
BENCHMARK(DecodeDuration);
BENCHMARK(PrintDuration);

int main(int argc, char **argv)
{
    CoInitializeEx(nullptr, COINIT_MULTITHREADED);
    if (!fillCache()) {
        std::fprintf(stderr, "the newsroom does not deliver its forms\n");
        return 2;
    }
    Comparison comparison;
    if (!comparison.run(argc, argv))
        return 2;
    bool held = comparison.takes("CachedForm", 1000);
    held &= comparison.holds("ReadForm<1000>", "ParseForm<1000>", 2);
    held &= comparison.holds("ReadForm<100000>", "ParseForm<100000>", 2);
    held &= comparison.holds("ReadForm<100000>", "ReadForm<1000>", 250);
    FormCache::Clear();
    return held ? 0 : 1;
}
