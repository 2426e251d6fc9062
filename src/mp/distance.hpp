// Distance on the sphere, and the point half way along a line.
#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "mp/coordinate.hpp"

namespace ferrowen {

// By the spherical law of cosines. Unit (either case): K kilometres, N nautical miles, any other statute
// miles.
double distance(const Position& from, const Position& to, char unit);

// Length of a line that grows point by point, in kilometres, and where its half lies. Sums are held in single
// precision.
class LineLength {
 public:
  void add(const Position& position);
  // Index of the half-way point: where the running sum first exceeds half of the total. Nothing when it never
  // does.
  [[nodiscard]] std::optional<std::size_t> half_way() const;
  [[nodiscard]] float total() const { return m_sums.empty() ? 0.0F : m_sums.back(); }

 private:
  struct OnSphere {
    double longitude = 0, sine = 0, cosine = 0;  // degrees; of the latitude
  };
  friend double distance(const Position&, const Position&, char);
  static OnSphere on_sphere(const Position& position);
  static double degrees_between(const OnSphere& from, const OnSphere& to);

  OnSphere m_previous;
  std::vector<float> m_sums;  // length up to each point
};

}  // namespace ferrowen
