<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr_FR">
<context>
    <name>ControlPanel</name>
    <message>
        <source>WUXAgent Control Panel</source>
        <translation>Panneau de contrôle de WUXAgent</translation>
    </message>
    <message>
        <source>Status</source>
        <translation>É&amp;tat</translation>
    </message>
    <message>
        <source>Installed location</source>
        <translation>&amp;Emplacement d’installation</translation>
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
        <translation>&amp;Arrêter l’agent</translation>
    </message>
    <message>
        <source>Start Agent</source>
        <translation>&amp;Démarrer l’agent</translation>
    </message>
    <message>
        <source>Restart Agent</source>
        <translation>&amp;Redémarrer l’agent</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>&amp;Fermer</translation>
    </message>
    <message>
        <source>Running</source>
        <translation>En cours d’exécution</translation>
    </message>
    <message>
        <source>Not running</source>
        <translation>Arrêté</translation>
    </message>
    <message>
        <source>N/A</source>
        <translation>N/D</translation>
    </message>
    <message>
        <source>The WUXAgent is not installed</source>
        <translation>WUXAgent n’est pas installé</translation>
    </message>
    <message>
        <source>Stopping</source>
        <translation>Arrêt en cours</translation>
    </message>
    <message>
        <source>Starting</source>
        <translation>Démarrage en cours</translation>
    </message>
    <message>
        <source>Restarting</source>
        <translation>Redémarrage en cours</translation>
    </message>
    <message>
        <source>Copy Details</source>
        <translation>&amp;Copier les détails</translation>
    </message>
    <message>
        <source>Copy the four fields as text, for a report</source>
        <translation>Copier les quatre champs sous forme de texte, pour un rapport</translation>
    </message>
    <message>
        <source>About</source>
        <translation>À pr&amp;opos</translation>
    </message>
    <message>
        <source>About WUXAgent Control Panel</source>
        <translation>À propos du panneau de contrôle de WUXAgent</translation>
    </message>
    <message>
        <source>Version %1</source>
        <translation>Version %1</translation>
    </message>
    <message>
        <source>Shows whether the WUXAgent runs, where it is installed and which version it is, and stops, starts and restarts it.</source>
        <translation>Indique si WUXAgent est en cours d’exécution, où il est installé et dans quelle version, et permet de l’arrêter, de le démarrer et de le redémarrer.</translation>
    </message>
    <message>
        <source>Copyright © 2026 the makers of the WUXAgent. All rights reserved.</source>
        <translation>Copyright © 2026 les créateurs de WUXAgent. Tous droits réservés.</translation>
    </message>
</context>
</TS>
