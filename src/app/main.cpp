// The Vellum desktop application: the main window over the files given on the command line
// and the desktop's recent-documents list.

#include "app/support/applicationSetup.h"
#include "app/windows/VellumAppDelegate.h"

#include <QApplication>
#include <QCommandLineParser>

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    vellum::setUpApplication();
    QApplication::setApplicationVersion(VELLUM_VERSION);

    QCommandLineParser parser;
    parser.setApplicationDescription(QApplication::translate("Vellum", "Viewer and converter for Access databases"));
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addPositionalArgument("files", QApplication::translate("Vellum", "Access files (.mdb, .accdb) to open"),
                                 "[FILE…]");
    parser.process(application);

    vellum::VellumAppDelegate window(vellum::VellumAppDelegate::Options{});
    window.show();
    const QStringList files = parser.positionalArguments();
    if (files.isEmpty())
        window.applicationDidFinishLaunching();
    else
        window.openFiles(files);
    return application.exec();
}
