// What a GTK 3 program pays for a window: a measure beside the panel.

#include <gtk/gtk.h>

int main( int argc, char** argv )
{
    gtk_init( &argc, &argv );
    GtkWidget* const window = gtk_window_new( GTK_WINDOW_TOPLEVEL );
    gtk_window_set_default_size( GTK_WINDOW( window ), 480, 220 );
    gtk_widget_show( window );
    gtk_main();
}
