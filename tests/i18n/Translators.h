#pragma once

#include <QCoreApplication>
#include <QTranslator>

#include <set>

#include "TranslationFile.h"

/// A translator for the time of a scope.
class Installed
{
public:
    explicit Installed(QTranslator &translator)
        : m_translator(translator)
    {
        QCoreApplication::installTranslator(&m_translator);
    }
    Installed(const Installed &) = delete;
    Installed &operator=(const Installed &) = delete;
    ~Installed() { QCoreApplication::removeTranslator(&m_translator); }

private:
    QTranslator &m_translator;
};

/// Notes what it is asked for and translates nothing.
class Recorder : public QTranslator
{
public:
    bool isEmpty() const override { return false; }
    QString translate(const char *context, const char *text, const char *comment, int) const override
    {
        m_asked.insert({QString::fromUtf8(context), QString::fromUtf8(text), QString::fromUtf8(comment)});
        return QString();
    }
    const std::set<SourceText> &asked() const { return m_asked; }

private:
    mutable std::set<SourceText> m_asked;
};
