<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN">
<context>
    <name>ControlPanel</name>
    <message>
        <source>WUXAgent Control Panel</source>
        <translation>WUXAgent 控制面板</translation>
    </message>
    <message>
        <source>Status</source>
        <translation>状态(&amp;S)</translation>
    </message>
    <message>
        <source>Installed location</source>
        <translation>安装位置(&amp;I)</translation>
    </message>
    <message>
        <source>Version</source>
        <translation>版本(&amp;V)</translation>
    </message>
    <message>
        <source>PID</source>
        <translation>PID(&amp;P)</translation>
    </message>
    <message>
        <source>Stop Agent</source>
        <translation>停止代理程序(&amp;T)</translation>
    </message>
    <message>
        <source>Start Agent</source>
        <translation>启动代理程序(&amp;T)</translation>
    </message>
    <message>
        <source>Restart Agent</source>
        <translation>重新启动代理程序(&amp;R)</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>关闭(&amp;C)</translation>
    </message>
    <message>
        <source>Running</source>
        <translation>正在运行</translation>
    </message>
    <message>
        <source>Not running</source>
        <translation>未运行</translation>
    </message>
    <message>
        <source>N/A</source>
        <translation>不适用</translation>
    </message>
    <message>
        <source>The WUXAgent is not installed</source>
        <translation>未安装 WUXAgent</translation>
    </message>
    <message>
        <source>Stopping</source>
        <translation>正在停止</translation>
    </message>
    <message>
        <source>Starting</source>
        <translation>正在启动</translation>
    </message>
    <message>
        <source>Restarting</source>
        <translation>正在重新启动</translation>
    </message>
    <message>
        <source>Copy Details</source>
        <translation>复制详细信息(&amp;Y)</translation>
    </message>
    <message>
        <source>Copy the four fields as text, for a report</source>
        <translation>将四个字段复制为文本，以便用于报告</translation>
    </message>
    <message>
        <source>About</source>
        <translation>关于(&amp;A)</translation>
    </message>
    <message>
        <source>About WUXAgent Control Panel</source>
        <translation>关于 WUXAgent 控制面板</translation>
    </message>
    <message>
        <source>Version %1</source>
        <translation>版本 %1</translation>
    </message>
    <message>
        <source>Shows whether the WUXAgent runs, where it is installed and which version it is, and stops, starts and restarts it.</source>
        <translation>显示 WUXAgent 是否正在运行，以及其安装位置和版本，并可停止、启动和重新启动它。</translation>
    </message>
    <message>
        <source>Copyright © 2026 the makers of the WUXAgent. All rights reserved.</source>
        <translation>版权所有 © 2026 WUXAgent 开发者。保留所有权利。</translation>
    </message>
</context>
</TS>
