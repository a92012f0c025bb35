<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en">
<context>
    <name>ControlPanel</name>
    <message>
        <source>WUXAgent Control Panel</source>
        <translation>WUXAgent Control Panel</translation>
    </message>
    <message>
        <source>Status</source>
        <translation>&amp;Status</translation>
    </message>
    <message>
        <source>Installed location</source>
        <translation>&amp;Installed location</translation>
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
        <translation>S&amp;top Agent</translation>
    </message>
    <message>
        <source>Start Agent</source>
        <translation>S&amp;tart Agent</translation>
    </message>
    <message>
        <source>Restart Agent</source>
        <translation>&amp;Restart Agent</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>&amp;Close</translation>
    </message>
    <message>
        <source>Running</source>
        <translation>Running</translation>
    </message>
    <message>
        <source>Not running</source>
        <translation>Not running</translation>
    </message>
    <message>
        <source>N/A</source>
        <translation>N/A</translation>
    </message>
    <message>
        <source>The WUXAgent is not installed</source>
        <translation>The WUXAgent is not installed</translation>
    </message>
    <message>
        <source>Stopping</source>
        <translation>Stopping</translation>
    </message>
    <message>
        <source>Starting</source>
        <translation>Starting</translation>
    </message>
    <message>
        <source>Restarting</source>
        <translation>Restarting</translation>
    </message>
    <message>
        <source>Copy Details</source>
        <translation>Cop&amp;y Details</translation>
    </message>
    <message>
        <source>Copy the four fields as text, for a report</source>
        <translation>Copy the four fields as text, for a report</translation>
    </message>
    <message>
        <source>About</source>
        <translation>&amp;About</translation>
    </message>
    <message>
        <source>About WUXAgent Control Panel</source>
        <translation>About WUXAgent Control Panel</translation>
    </message>
    <message>
        <source>Version %1</source>
        <translation>Version %1</translation>
    </message>
    <message>
        <source>Shows whether the WUXAgent runs, where it is installed and which version it is, and stops, starts and restarts it.</source>
        <translation>Shows whether the WUXAgent runs, where it is installed and which version it is, and stops, starts and restarts it.</translation>
    </message>
    <message>
        <source>Copyright © 2026 the makers of the WUXAgent. All rights reserved.</source>
        <translation>Copyright © 2026 the makers of the WUXAgent. All rights reserved.</translation>
    </message>
</context>
</TS>
