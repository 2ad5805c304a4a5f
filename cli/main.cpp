#include <QCoreApplication>
int main(int argc, char** argv) { QCoreApplication a(argc, argv); return 0; }
