#pragma once

#include <map>
#include <memory>

// One fixture per folder size, built the first time a benchmark asks for that size and
// kept for the rest of the run, since building a large synthetic folder costs more than
// most of what is measured on it.
template <typename Fixture>
Fixture &FixtureFor(int features)
{
    static std::map<int, std::unique_ptr<Fixture>> fixtures;
    std::unique_ptr<Fixture> &fixture = fixtures[features];
    if (!fixture)
        fixture = std::make_unique<Fixture>(features);
    return *fixture;
}
