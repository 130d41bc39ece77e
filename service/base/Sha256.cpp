#include "service/base/Sha256.h"

#include <array>
#include <bit>
#include <cmath>
#include <cstdint>

namespace service {
namespace {

using State = std::array<std::uint32_t, 8>;
using Constants = std::array<std::uint32_t, 64>;

bool isPrime(int number) {
  for (int divisor = 2; divisor * divisor <= number; ++divisor) {
    if (number % divisor == 0) return false;
  }
  return true;
}

/// The first 32 bits behind the point of a root; the widest float is exact enough for the 64 that are needed.
std::uint32_t fractionOf(long double root) {
  return static_cast<std::uint32_t>((root - std::floor(root)) * 4294967296.0L);
}

template <class Root, std::size_t count>
std::array<std::uint32_t, count> rootsOfPrimes(Root root) {
  std::array<std::uint32_t, count> result{};
  std::size_t filled = 0;
  for (int number = 2; filled < count; ++number) {
    if (isPrime(number)) result[filled++] = fractionOf(root(static_cast<long double>(number)));
  }
  return result;
}

const State& firstState() {
  static const auto root = [](long double x) { return std::sqrt(x); };
  static const State state = rootsOfPrimes<decltype(root), 8>(root);
  return state;
}

const Constants& constants() {
  static const auto root = [](long double x) { return std::cbrt(x); };
  static const Constants values = rootsOfPrimes<decltype(root), 64>(root);
  return values;
}

Constants scheduleOf(std::string_view block) {
  Constants words{};
  for (std::size_t i = 0; i < 64; ++i) {
    const auto byte = static_cast<std::uint32_t>(static_cast<unsigned char>(block[i]));
    words[i / 4] |= byte << (24 - 8 * (i % 4));
  }
  for (std::size_t i = 16; i < 64; ++i) {
    const std::uint32_t a = words[i - 15];
    const std::uint32_t b = words[i - 2];
    words[i] = words[i - 16] + (std::rotr(a, 7) ^ std::rotr(a, 18) ^ (a >> 3)) + words[i - 7] +
               (std::rotr(b, 17) ^ std::rotr(b, 19) ^ (b >> 10));
  }
  return words;
}

void digest(State& state, std::string_view block) {
  const Constants words = scheduleOf(block);
  auto [a, b, c, d, e, f, g, h] = state;
  for (std::size_t i = 0; i < 64; ++i) {
    const std::uint32_t choice = (e & f) ^ (~e & g);
    const std::uint32_t majority = (a & b) ^ (a & c) ^ (b & c);
    const std::uint32_t first =
        h + (std::rotr(e, 6) ^ std::rotr(e, 11) ^ std::rotr(e, 25)) + choice + constants()[i] + words[i];
    const std::uint32_t second = (std::rotr(a, 2) ^ std::rotr(a, 13) ^ std::rotr(a, 22)) + majority;
    h = g;
    g = f;
    f = e;
    e = d + first;
    d = c;
    c = b;
    b = a;
    a = first + second;
  }
  const State added{a, b, c, d, e, f, g, h};
  for (std::size_t i = 0; i < state.size(); ++i) state[i] += added[i];
}

}  // namespace

std::string sha256(std::string_view text) {
  std::string padded(text);
  padded += '\x80';
  while (padded.size() % 64 != 56) padded += '\0';
  const std::uint64_t bits = std::uint64_t{text.size()} * 8;
  for (int shift = 56; shift >= 0; shift -= 8) padded += static_cast<char>((bits >> shift) & 0xff);
  State state = firstState();
  for (std::size_t at = 0; at < padded.size(); at += 64) digest(state, std::string_view(padded).substr(at, 64));
  std::string result;
  for (const std::uint32_t word : state) {
    for (int shift = 28; shift >= 0; shift -= 4) result += "0123456789abcdef"[(word >> shift) & 0xf];
  }
  return result;
}

}  // namespace service
