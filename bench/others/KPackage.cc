// KPackage finds packages described by JSON files.
#include "bench/Measured.h"

#include <KPackage/PackageLoader>
#include <KPluginMetaData>
#include <QCoreApplication>
#include <QString>

int main(int argumentCount, char** arguments)
{
    if (argumentCount != 2) {
        std::fputs("usage: kest_bench_kpackage TREE/home\n", stderr);
        return 2;
    }
    const QString folder = QString::fromLocal8Bit(arguments[1]) + QStringLiteral("/../json/");
    const bench::Measured measured;
    const QCoreApplication application(argumentCount, arguments);
    const auto packages = KPackage::PackageLoader::self()->listPackages(QString(), folder);
    measured.report(static_cast<std::size_t>(packages.size()));
    return 0;
}
