#include <vrelio/vrelio.h>

#include <iostream>

int main() { std::cout << "1 um is " << si::value("1 um").in("nm") << " nm\n"; }
