// SPDX-License-Identifier: MIT
#pragma once
// Compile-time sine, cosine and square root, so that the decoder's coefficient tables are
// constants computed in double precision rather than state filled in at start-up.
namespace vntts::mpeg::cmath {

inline constexpr double kPi = 3.14159265358979323846264338327950288;

constexpr double Cos(double x) {
  // Reduce to [-pi, pi], then a Taylor series that converges to double precision there.
  const double two_pi = 2 * kPi;
  long turns = static_cast<long>(x / two_pi);
  x -= static_cast<double>(turns) * two_pi;
  if (x > kPi) x -= two_pi;
  if (x < -kPi) x += two_pi;
  double term = 1, sum = 1;
  for (int n = 1; n < 40; ++n) {
    term *= -x * x / ((2 * n - 1) * (2 * n));
    sum += term;
  }
  return sum;
}

constexpr double Sin(double x) {
  return Cos(x - kPi / 2);
}

constexpr double Sqrt(double x) {
  if (x <= 0) return 0;
  double r = x > 1 ? x : 1;
  for (int i = 0; i < 200; ++i) {
    const double next = 0.5 * (r + x / r);
    if (next == r) break;
    r = next;
  }
  return r;
}

constexpr double Cbrt(double x) {
  if (x <= 0) return 0;
  double r = x > 1 ? x : 1;
  for (int i = 0; i < 200; ++i) {
    const double next = (2 * r + x / (r * r)) / 3;
    if (next == r) break;
    r = next;
  }
  return r;
}

} // namespace vntts::mpeg::cmath
