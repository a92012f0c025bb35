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
        <translation>Status</translation>
    </message>
    <message>
        <source>Installed location</source>
        <translation>Installationsort</translation>
    </message>
    <message>
        <source>Version</source>
        <translation>Version</translation>
    </message>
    <message>
        <source>PID</source>
        <translation>PID</translation>
    </message>
    <message>
        <source>Stop Agent</source>
        <translation>Agent anhalten</translation>
    </message>
    <message>
        <source>Start Agent</source>
        <translation>Agent starten</translation>
    </message>
    <message>
        <source>Restart Agent</source>
        <translation>Agent neu starten</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
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
        <source>About WUXAgent Control Panel</source>
        <translation>Über die WUXAgent-Verwaltung</translation>
    </message>
    <message>
        <source>Shows whether the WUXAgent runs, where it is installed and which version it is, and stops, starts and restarts it.</source>
        <translation>Zeigt, ob der WUXAgent läuft, wo und in welcher Version er installiert ist, und hält ihn an, startet ihn und startet ihn neu.</translation>
    </message>
</context>
</TS>
