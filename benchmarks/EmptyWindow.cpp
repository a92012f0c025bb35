// What any Qt Widgets program pays for a window: the measure beside the panel.

#include <QApplication>
#include <QWidget>

int main( int argc, char** argv )
{
    QApplication application( argc, argv );
    QWidget window;
    window.resize( 480, 220 );
    window.show();
    return QApplication::exec();
}
