#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include "support/QtPrinting.h"

/// What a run of `quire` left.
struct Outcome
{
    int code = -1;
    QString output;
    QString errors;
    QByteArray bytes; ///< The output as it came.

    QStringList lines() const { return output.split(QLatin1Char('\n')); }
    /// The output as one JSON document; empty when it is none.
    QJsonObject json() const;
    /// Whether the error output is exactly one line that begins with "quire: ".
    bool hasOneErrorLine() const;
};

/// A test that runs the built program, each time in a temporary folder of the test.
class ProgramTest : public testing::Test
{
public:
    /// Expects that \a run failed with \a code, one line of error that has \a words, and no output.
    static void expectFailure(const Outcome &run, int code, const char *words);

protected:
    /// Runs `quire` to its end. \a input is its standard input.
    Outcome quire(const QStringList &arguments, const QByteArray &input = QByteArray());
    /// The same with \a arguments separated by blanks.
    Outcome quire(const char *arguments);

    static QString programPath();
    QString path(const char *name) const { return m_folder.filePath(QLatin1String(name)); }
    void write(const char *name, const QByteArray &bytes) const;
    QByteArray read(const char *name) const;
    bool exists(const char *name) const;

    QProcessEnvironment m_environment = QProcessEnvironment::systemEnvironment();

private:
    QTemporaryDir m_folder;
};
