#pragma once

#include <gtest/gtest.h>

#include <memory>

#include <quire/newsroom/model/Model.h>

/// The newsroom that \a text describes.
inline std::shared_ptr<Newsroom::Model> newsroom(const char *text)
{
    QString error;
    auto model = Newsroom::Model::fromText(QString::fromUtf8(text), &error);
    EXPECT_NE(model, nullptr) << error.toStdString();
    return model;
}
