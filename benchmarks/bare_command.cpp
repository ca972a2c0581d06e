// What a Qt command costs at the least.
#include <QCoreApplication>
#include <cstdio>

int main(int argc, char** argv) {
  const QCoreApplication application(argc, argv);
  std::puts("bare");
}
