<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE">
<context>
    <name>ControlPanel</name>
    <message>
        <source>WUXAgent Control Panel</source>
        <translation>WUXAgent-Verwaltung</translation>
    </message>
    <message>
        <source>Status</source>
        <translation>&amp;Status</translation>
    </message>
    <message>
        <source>Installed location</source>
        <translation>&amp;Installationsort</translation>
    </message>
    <message>
        <source>Version</source>
        <translation>&amp;Version</translation>
    </message>
    <message>
        <source>PID</source>
        <translation>&amp;PID</translation>
    </message>
    <message>
        <source>Stop Agent</source>
        <translation>&amp;Agent anhalten</translation>
    </message>
    <message>
        <source>Start Agent</source>
        <translation>&amp;Agent starten</translation>
    </message>
    <message>
        <source>Restart Agent</source>
        <translation>Agent &amp;neu starten</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>S&amp;chließen</translation>
    </message>
    <message>
        <source>Running</source>
        <translation>Läuft</translation>
    </message>
    <message>
        <source>Not running</source>
        <translation>Läuft nicht</translation>
    </message>
    <message>
        <source>N/A</source>
        <translation>Nicht verfügbar</translation>
    </message>
    <message>
        <source>The WUXAgent is not installed</source>
        <translation>Der WUXAgent ist nicht installiert</translation>
    </message>
    <message>
        <source>Stopping</source>
        <translation>Wird angehalten</translation>
    </message>
    <message>
        <source>Starting</source>
        <translation>Wird gestartet</translation>
    </message>
    <message>
        <source>Restarting</source>
        <translation>Wird neu gestartet</translation>
    </message>
    <message>
        <source>Copy Details</source>
        <translation>Details &amp;kopieren</translation>
    </message>
    <message>
        <source>Copy the four fields as text, for a report</source>
        <translation>Die vier Felder als Text für einen Bericht kopieren</translation>
    </message>
    <message>
        <source>About</source>
        <translation>Ü&amp;ber</translation>
    </message>
    <message>
        <source>About WUXAgent Control Panel</source>
        <translation>Über die WUXAgent-Verwaltung</translation>
    </message>
    <message>
        <source>Version %1</source>
        <translation>Version %1</translation>
    </message>
    <message>
        <source>Shows whether the WUXAgent runs, where it is installed and which version it is, and stops, starts and restarts it.</source>
        <translation>Zeigt, ob der WUXAgent läuft, wo und in welcher Version er installiert ist, und erlaubt es, ihn anzuhalten, zu starten und neu zu starten.</translation>
    </message>
    <message>
        <source>Copyright © 2026 the makers of the WUXAgent. All rights reserved.</source>
        <translation>Copyright © 2026 die Hersteller des WUXAgent. Alle Rechte vorbehalten.</translation>
    </message>
</context>
</TS>
