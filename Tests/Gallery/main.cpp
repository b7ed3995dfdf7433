// Writes the gallery's pictures: "--strips FOLDER" the ones that tests compare with, "--sheet FILE"
// the contact sheet.
#include "Tests/Gallery/PillGallery.hpp"

#include <QCoreApplication>
#include <QDir>
#include <QGuiApplication>

#include <cstdio>

namespace {

bool save(const QImage& image, const QString& file) {
  constexpr int smallest = 0;  // of the compression that a PNG writer can choose
  if (image.save(file, "PNG", smallest)) return true;
  std::fprintf(stderr, "can't write %s\n", qPrintable(file));
  return false;
}

bool saveStrips(const QString& folder) {
  if (!QDir().mkpath(folder)) return false;
  for (const auto& name : kestrow::gallery::stripNames()) {
    for (const double scale : {1.0, 2.0}) {
      const auto file = QDir(folder).filePath(kestrow::gallery::stripFile(name, scale));
      if (!save(kestrow::gallery::strip(name, scale), file)) return false;
    }
  }
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  const QGuiApplication app(argc, argv);
  const QStringList arguments = QCoreApplication::arguments();
  if (arguments.size() == 3 && arguments[1] == QLatin1String("--strips")) {
    return saveStrips(arguments[2]) ? 0 : 1;
  }
  if (arguments.size() == 3 && arguments[1] == QLatin1String("--sheet")) {
    return save(kestrow::gallery::contactSheet(2), arguments[2]) ? 0 : 1;
  }
  std::fprintf(stderr, "kestrow-gallery --strips FOLDER | --sheet FILE\n");
  return 2;
}
