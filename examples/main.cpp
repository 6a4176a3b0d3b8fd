#include <QvXml10.h>
#include <cstdio>
int main() { std::printf("placeholder\n"); return 0; }
