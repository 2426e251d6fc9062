#include "mp/distance.hpp"

#include <algorithm>
#include <cmath>

namespace ferrowen {

namespace {

// Shorter than the double precision constant: results are compared with those of older versions.
constexpr double pi = 3.14159265358979;
constexpr double minutes_per_degree = 60;
constexpr double miles_per_minute = 1.1515;
constexpr double kilometres_per_mile = 1.609344;
constexpr double nautical_miles_per_mile = 0.8684;

double deg2rad(double degrees) { return degrees * pi / 180; }
double rad2deg(double radians) { return radians * 180 / pi; }

// Rounding may push the cosine a little outside -1 to 1.
double arc_cosine(double x) {
  if (x >= 1) return 0;
  if (x <= -1) return pi;
  return pi / 2 - std::atan(x / std::sqrt(1 - x * x));
}

double in_unit(double miles, char unit) {
  if (unit == 'K' || unit == 'k') return miles * kilometres_per_mile;
  if (unit == 'N' || unit == 'n') return miles * nautical_miles_per_mile;
  return miles;
}

double miles_of(double degrees) { return degrees * minutes_per_degree * miles_per_minute; }

}  // namespace

LineLength::OnSphere LineLength::on_sphere(const Position& position) {
  const double latitude = deg2rad(position.latitude);
  return {position.longitude, std::sin(latitude), std::cos(latitude)};
}

double LineLength::degrees_between(const OnSphere& from, const OnSphere& to) {
  const double theta = from.longitude - to.longitude;
  return rad2deg(arc_cosine(from.sine * to.sine + from.cosine * to.cosine * std::cos(deg2rad(theta))));
}

double distance(const Position& from, const Position& to, char unit) {
  return in_unit(
      miles_of(LineLength::degrees_between(LineLength::on_sphere(from), LineLength::on_sphere(to))), unit);
}

void LineLength::add(const Position& position) {
  const OnSphere current = on_sphere(position);
  if (m_sums.empty())
    m_sums.push_back(0.0F);
  else
    m_sums.push_back(
        static_cast<float>(m_sums.back() + in_unit(miles_of(degrees_between(m_previous, current)), 'K')));
  m_previous = current;
}

std::optional<std::size_t> LineLength::half_way() const {
  const float half = total() / 2;
  const auto found = std::find_if(m_sums.begin(), m_sums.end(), [half](float sum) { return sum > half; });
  if (found == m_sums.end()) return std::nullopt;
  return static_cast<std::size_t>(found - m_sums.begin());
}

}  // namespace ferrowen
