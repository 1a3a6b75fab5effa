// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

#include <functional>
#include <memory>

// The test classes of an executable, by name.
class TestRegistry
{
public:
    using Factory = std::function<std::unique_ptr<QObject>()>;

    static bool add(const char *className, Factory factory);
};

// Stands once in the source of each test class, outside any namespace.
#define VANTLE_TEST(ClassName)                                                                                         \
    [[maybe_unused]] static const bool ClassName##IsRegistered                                                         \
        = TestRegistry::add(#ClassName, [] { return std::make_unique<ClassName>(); });
