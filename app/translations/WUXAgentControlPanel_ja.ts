<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ja_JP">
<context>
    <name>ControlPanel</name>
    <message>
        <source>WUXAgent Control Panel</source>
        <translation>WUXAgent コントロールパネル</translation>
    </message>
    <message>
        <source>Status</source>
        <translation>状態(&amp;S)</translation>
    </message>
    <message>
        <source>Installed location</source>
        <translation>インストール先(&amp;I)</translation>
    </message>
    <message>
        <source>Version</source>
        <translation>バージョン(&amp;V)</translation>
    </message>
    <message>
        <source>PID</source>
        <translation>PID(&amp;P)</translation>
    </message>
    <message>
        <source>Stop Agent</source>
        <translation>エージェントを停止(&amp;T)</translation>
    </message>
    <message>
        <source>Start Agent</source>
        <translation>エージェントを起動(&amp;T)</translation>
    </message>
    <message>
        <source>Restart Agent</source>
        <translation>エージェントを再起動(&amp;R)</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>閉じる(&amp;C)</translation>
    </message>
    <message>
        <source>Running</source>
        <translation>実行中</translation>
    </message>
    <message>
        <source>Not running</source>
        <translation>実行されていません</translation>
    </message>
    <message>
        <source>N/A</source>
        <translation>該当なし</translation>
    </message>
    <message>
        <source>The WUXAgent is not installed</source>
        <translation>WUXAgent はインストールされていません</translation>
    </message>
    <message>
        <source>Stopping</source>
        <translation>停止処理中</translation>
    </message>
    <message>
        <source>Starting</source>
        <translation>起動処理中</translation>
    </message>
    <message>
        <source>Restarting</source>
        <translation>再起動処理中</translation>
    </message>
    <message>
        <source>Copy Details</source>
        <translation>詳細をコピー(&amp;Y)</translation>
    </message>
    <message>
        <source>Copy the four fields as text, for a report</source>
        <translation>4 つの項目を報告用のテキストとしてコピーします</translation>
    </message>
    <message>
        <source>About</source>
        <translation>このアプリについて(&amp;A)</translation>
    </message>
    <message>
        <source>About WUXAgent Control Panel</source>
        <translation>WUXAgent コントロールパネルについて</translation>
    </message>
    <message>
        <source>Version %1</source>
        <translation>バージョン %1</translation>
    </message>
    <message>
        <source>Shows whether the WUXAgent runs, where it is installed and which version it is, and stops, starts and restarts it.</source>
        <translation>WUXAgent が実行中かどうか、インストール先、バージョンを表示し、WUXAgent の停止、起動、再起動を行います。</translation>
    </message>
    <message>
        <source>Copyright © 2026 the makers of the WUXAgent. All rights reserved.</source>
        <translation>Copyright © 2026 WUXAgent 開発元. All rights reserved.</translation>
    </message>
</context>
</TS>
