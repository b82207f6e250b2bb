#include <vrelio/vrelio.h>

#include <iostream>

int main() {
  const si::value wavelength("488 nm");
  std::cout << wavelength.in("um") << " um\n";

  si::value speed("3e8 m");
  speed /= si::value("1 s");
  si::value frequency = speed / wavelength;
  std::cout << frequency.format(3, si::format_prefix | si::format_separate) << '\n';

  const si::value sum = speed + frequency;
  std::cout << (sum.is_valid() ? "a sum" : "no sum of a speed and a frequency") << '\n';
}
