<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="es_ES">
<context>
    <name>ControlPanel</name>
    <message>
        <source>WUXAgent Control Panel</source>
        <translation>Panel de control de WUXAgent</translation>
    </message>
    <message>
        <source>Status</source>
        <translation>&amp;Estado</translation>
    </message>
    <message>
        <source>Installed location</source>
        <translation>&amp;Ubicación de instalación</translation>
    </message>
    <message>
        <source>Version</source>
        <translation>&amp;Versión</translation>
    </message>
    <message>
        <source>PID</source>
        <translation>&amp;PID</translation>
    </message>
    <message>
        <source>Stop Agent</source>
        <translation>&amp;Detener el agente</translation>
    </message>
    <message>
        <source>Start Agent</source>
        <translation>&amp;Iniciar el agente</translation>
    </message>
    <message>
        <source>Restart Agent</source>
        <translation>&amp;Reiniciar el agente</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>&amp;Cerrar</translation>
    </message>
    <message>
        <source>Running</source>
        <translation>En ejecución</translation>
    </message>
    <message>
        <source>Not running</source>
        <translation>No está en ejecución</translation>
    </message>
    <message>
        <source>N/A</source>
        <translation>N/D</translation>
    </message>
    <message>
        <source>The WUXAgent is not installed</source>
        <translation>WUXAgent no está instalado</translation>
    </message>
    <message>
        <source>Stopping</source>
        <translation>Deteniendo</translation>
    </message>
    <message>
        <source>Starting</source>
        <translation>Iniciando</translation>
    </message>
    <message>
        <source>Restarting</source>
        <translation>Reiniciando</translation>
    </message>
    <message>
        <source>Copy Details</source>
        <translation>C&amp;opiar detalles</translation>
    </message>
    <message>
        <source>Copy the four fields as text, for a report</source>
        <translation>Copiar los cuatro campos como texto, para un informe</translation>
    </message>
    <message>
        <source>About</source>
        <translation>&amp;Acerca de</translation>
    </message>
    <message>
        <source>About WUXAgent Control Panel</source>
        <translation>Acerca del panel de control de WUXAgent</translation>
    </message>
    <message>
        <source>Version %1</source>
        <translation>Versión %1</translation>
    </message>
    <message>
        <source>Shows whether the WUXAgent runs, where it is installed and which version it is, and stops, starts and restarts it.</source>
        <translation>Muestra si WUXAgent está en ejecución, dónde está instalado y cuál es su versión, y permite detenerlo, iniciarlo y reiniciarlo.</translation>
    </message>
    <message>
        <source>Copyright © 2026 the makers of the WUXAgent. All rights reserved.</source>
        <translation>Copyright © 2026 los creadores de WUXAgent. Todos los derechos reservados.</translation>
    </message>
</context>
</TS>
