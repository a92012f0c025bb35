<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="it_IT">
<context>
    <name>ControlPanel</name>
    <message>
        <source>WUXAgent Control Panel</source>
        <translation>Pannello di controllo di WUXAgent</translation>
    </message>
    <message>
        <source>Status</source>
        <translation>&amp;Stato</translation>
    </message>
    <message>
        <source>Installed location</source>
        <translation>Percorso di &amp;installazione</translation>
    </message>
    <message>
        <source>Version</source>
        <translation>&amp;Versione</translation>
    </message>
    <message>
        <source>PID</source>
        <translation>&amp;PID</translation>
    </message>
    <message>
        <source>Stop Agent</source>
        <translation>&amp;Arresta agente</translation>
    </message>
    <message>
        <source>Start Agent</source>
        <translation>&amp;Avvia agente</translation>
    </message>
    <message>
        <source>Restart Agent</source>
        <translation>&amp;Riavvia agente</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>&amp;Chiudi</translation>
    </message>
    <message>
        <source>Running</source>
        <translation>In esecuzione</translation>
    </message>
    <message>
        <source>Not running</source>
        <translation>Non in esecuzione</translation>
    </message>
    <message>
        <source>N/A</source>
        <translation>N/D</translation>
    </message>
    <message>
        <source>The WUXAgent is not installed</source>
        <translation>WUXAgent non è installato</translation>
    </message>
    <message>
        <source>Stopping</source>
        <translation>Arresto in corso</translation>
    </message>
    <message>
        <source>Starting</source>
        <translation>Avvio in corso</translation>
    </message>
    <message>
        <source>Restarting</source>
        <translation>Riavvio in corso</translation>
    </message>
    <message>
        <source>Copy Details</source>
        <translation>Copia &amp;dettagli</translation>
    </message>
    <message>
        <source>Copy the four fields as text, for a report</source>
        <translation>Copia i quattro campi come testo, per una segnalazione</translation>
    </message>
    <message>
        <source>About</source>
        <translation>I&amp;nformazioni</translation>
    </message>
    <message>
        <source>About WUXAgent Control Panel</source>
        <translation>Informazioni sul pannello di controllo di WUXAgent</translation>
    </message>
    <message>
        <source>Version %1</source>
        <translation>Versione %1</translation>
    </message>
    <message>
        <source>Shows whether the WUXAgent runs, where it is installed and which version it is, and stops, starts and restarts it.</source>
        <translation>Mostra se WUXAgent è in esecuzione, dove è installato e in quale versione, e permette di arrestarlo, avviarlo e riavviarlo.</translation>
    </message>
    <message>
        <source>Copyright © 2026 the makers of the WUXAgent. All rights reserved.</source>
        <translation>Copyright © 2026 i creatori di WUXAgent. Tutti i diritti riservati.</translation>
    </message>
</context>
</TS>
