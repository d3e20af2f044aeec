// All else stands in a shared library: so the bare calls reach the services over as short a way as the casts do. An
// executable lies far from the libraries, and a call over more than four gigabytes takes half a nanosecond longer.

int bench_main(int argc, char **argv); // main.cpp

int main(int argc, char **argv) { return bench_main(argc, argv); }
