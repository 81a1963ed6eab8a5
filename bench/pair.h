// A benchmark of an operation beside hand-written code that makes the same SDK calls.
#pragma once

#include <benchmark/benchmark.h>

#include <string>

#include "sim/manager/manager.h"

namespace zrbench_pair
{

// The twelve tables, filled once by the library over the instant platform.
using Tables = zrsim::OperationTables;
const Tables &tables();

// Registers "name/library" and "name/direct"; both bodies are callables without arguments. Arguments of the
// calls inside should come through opaque() so that neither side is specialised for them.
template <class Library, class Direct> bool pair(const char *name, Library library, Direct direct)
{
    auto run = [](auto body) {
        return [body](benchmark::State &state) mutable {
            for (auto _ : state) {
                body();
                benchmark::ClobberMemory();
            }
        };
    };
    benchmark::RegisterBenchmark((std::string(name) + "/library").c_str(), run(library));
    benchmark::RegisterBenchmark((std::string(name) + "/direct").c_str(), run(direct));
    return true;
}

template <class T> T opaque(T value)
{
    benchmark::DoNotOptimize(value);
    return value;
}

} // namespace zrbench_pair
