// Makes event logs to try the program with: whole stores of plausible logs, or one log of a given length. The same
// arguments give the same bytes on every system.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

namespace corvina::samples {

struct SampleStoreOptions {
    std::uint64_t Events = 100'000;  // in all logs of one computer together
    std::uint32_t Computers = 1;     // 1 to MostComputers, "localhost" first
    std::uint64_t Seed = 1;
};

inline constexpr std::uint32_t MostComputers = 1000;
// More than these would not fit on most disks.
inline constexpr std::uint64_t MostEvents = 1'000'000'000;

// The folder and computer name of a computer of the store.
std::wstring SampleComputerName(std::uint32_t index);

// Writes a store: a folder for each computer with its logs, "channels.ini" and "publishers". The folder must not exist
// or be empty; it appears when complete. False with `problem` set, in English, when that fails; then nothing is left
// behind.
bool WriteSampleStore(const std::filesystem::path& folder, const SampleStoreOptions& options, std::wstring& problem);

// Writes one log with events of a channel, 1 being its first record identifier, as the local computer would. Replaces
// the file. Returns 0 or a system error code.
std::uint32_t WriteSampleLog(const std::filesystem::path& path, const std::wstring& channel, std::uint64_t events,
                             std::uint64_t seed);

}  // namespace corvina::samples
