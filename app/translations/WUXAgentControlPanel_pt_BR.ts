<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="pt_BR">
<context>
    <name>ControlPanel</name>
    <message>
        <source>WUXAgent Control Panel</source>
        <translation>Painel de controle do WUXAgent</translation>
    </message>
    <message>
        <source>Status</source>
        <translation>&amp;Status</translation>
    </message>
    <message>
        <source>Installed location</source>
        <translation>&amp;Local de instalação</translation>
    </message>
    <message>
        <source>Version</source>
        <translation>&amp;Versão</translation>
    </message>
    <message>
        <source>PID</source>
        <translation>&amp;PID</translation>
    </message>
    <message>
        <source>Stop Agent</source>
        <translation>Parar &amp;agente</translation>
    </message>
    <message>
        <source>Start Agent</source>
        <translation>Iniciar &amp;agente</translation>
    </message>
    <message>
        <source>Restart Agent</source>
        <translation>&amp;Reiniciar agente</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>&amp;Fechar</translation>
    </message>
    <message>
        <source>Running</source>
        <translation>Em execução</translation>
    </message>
    <message>
        <source>Not running</source>
        <translation>Não está em execução</translation>
    </message>
    <message>
        <source>N/A</source>
        <translation>N/D</translation>
    </message>
    <message>
        <source>The WUXAgent is not installed</source>
        <translation>O WUXAgent não está instalado</translation>
    </message>
    <message>
        <source>Stopping</source>
        <translation>Parando</translation>
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
        <translation>&amp;Copiar detalhes</translation>
    </message>
    <message>
        <source>Copy the four fields as text, for a report</source>
        <translation>Copiar os quatro campos como texto, para um relatório</translation>
    </message>
    <message>
        <source>About</source>
        <translation>S&amp;obre</translation>
    </message>
    <message>
        <source>About WUXAgent Control Panel</source>
        <translation>Sobre o painel de controle do WUXAgent</translation>
    </message>
    <message>
        <source>Version %1</source>
        <translation>Versão %1</translation>
    </message>
    <message>
        <source>Shows whether the WUXAgent runs, where it is installed and which version it is, and stops, starts and restarts it.</source>
        <translation>Mostra se o WUXAgent está em execução, onde está instalado e qual é a sua versão, e permite pará-lo, iniciá-lo e reiniciá-lo.</translation>
    </message>
    <message>
        <source>Copyright © 2026 the makers of the WUXAgent. All rights reserved.</source>
        <translation>Copyright © 2026 os criadores do WUXAgent. Todos os direitos reservados.</translation>
    </message>
</context>
</TS>
