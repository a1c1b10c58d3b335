#pragma once

#include <pthread.h>

#include <limits>

#include <gtest/gtest.h>

/// For one scope no thread can be made in this process: each would have to get more stack than there are addresses.
class NoThreads
{
public:
    NoThreads()
    {
        EXPECT_EQ(pthread_getattr_default_np(&m_usual), 0);
        pthread_attr_t huge{};
        EXPECT_EQ(pthread_getattr_default_np(&huge), 0);
        EXPECT_EQ(pthread_attr_setstacksize(&huge, std::numeric_limits<std::size_t>::max() / 4 & ~std::size_t{0xffff}),
                  0);
        EXPECT_EQ(pthread_setattr_default_np(&huge), 0);
        pthread_attr_destroy(&huge);
    }
    ~NoThreads()
    {
        pthread_setattr_default_np(&m_usual);
        pthread_attr_destroy(&m_usual);
    }
    NoThreads(const NoThreads &) = delete;
    NoThreads &operator=(const NoThreads &) = delete;

private:
    pthread_attr_t m_usual{};
};
