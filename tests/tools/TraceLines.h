#pragma once

/// \file
/// Reads what --trace wrote.

#include <QByteArray>
#include <QJsonObject>
#include <QString>

#include <vector>

/// The lines of a trace, each of which must be an object.
std::vector<QJsonObject> linesOf(const QByteArray &trace);

/// "QuireCOM::Connect ISignon4::Connect 0x00000000"
QString text(const QJsonObject &line);

/// The same of all lines.
std::vector<QString> texts(const QByteArray &trace);

/// Expects a trace of some calls, each with the four things that are said of one.
void expectFourThingsOfEachCall(const QByteArray &trace);
