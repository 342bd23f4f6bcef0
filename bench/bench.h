#pragma once

#include <fstream>
#include <string>

// The words that every program here completes.
constexpr int kBenchWords = 512;

inline std::string BenchWord(int number) {
    return (number % 2 == 0 ? "m" : "c") + std::to_string(number / 2);
}

// The number after a word of a file of /proc; 0 without one.
inline long long ProcNumber(const std::string& path, const std::string& name) {
    std::ifstream file(path);
    std::string word;
    while (file >> word && word != name) {
    }
    long long number = 0;
    file >> number;
    return number;
}
