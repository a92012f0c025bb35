<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ar">
<context>
    <name>ControlPanel</name>
    <message>
        <source>WUXAgent Control Panel</source>
        <translation>لوحة تحكم WUXAgent</translation>
    </message>
    <message>
        <source>Status</source>
        <translatorcomment>A mnemonic stands on a letter that joins neither neighbour: marked, it is drawn by itself.</translatorcomment>
        <translation>&amp;الحالة</translation>
    </message>
    <message>
        <source>Installed location</source>
        <translation>مكا&amp;ن التثبيت</translation>
    </message>
    <message>
        <source>Version</source>
        <translation>الإصدا&amp;ر</translation>
    </message>
    <message>
        <source>PID</source>
        <translation>معرّف العملية (&amp;PID)</translation>
    </message>
    <message>
        <source>Stop Agent</source>
        <translation>إيقا&amp;ف الوكيل</translation>
    </message>
    <message>
        <source>Start Agent</source>
        <translation>بد&amp;ء تشغيل الوكيل</translation>
    </message>
    <message>
        <source>Restart Agent</source>
        <translation>إعا&amp;دة تشغيل الوكيل</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>إغلا&amp;ق</translation>
    </message>
    <message>
        <source>Running</source>
        <translation>قيد التشغيل</translation>
    </message>
    <message>
        <source>Not running</source>
        <translation>متوقف</translation>
    </message>
    <message>
        <source>N/A</source>
        <translation>غير متاح</translation>
    </message>
    <message>
        <source>The WUXAgent is not installed</source>
        <translation>الوكيل WUXAgent غير مثبّت</translation>
    </message>
    <message>
        <source>Stopping</source>
        <translation>جارٍ الإيقاف</translation>
    </message>
    <message>
        <source>Starting</source>
        <translation>جارٍ بدء التشغيل</translation>
    </message>
    <message>
        <source>Restarting</source>
        <translation>جارٍ إعادة التشغيل</translation>
    </message>
    <message>
        <source>Copy Details</source>
        <translation>نسخ المعلوما&amp;ت</translation>
    </message>
    <message>
        <source>Copy the four fields as text, for a report</source>
        <translation>نسخ الحقول الأربعة كنص لإدراجها في تقرير</translation>
    </message>
    <message>
        <source>About</source>
        <translation>حو&amp;ل</translation>
    </message>
    <message>
        <source>About WUXAgent Control Panel</source>
        <translation>حول لوحة تحكم WUXAgent</translation>
    </message>
    <message>
        <source>Version %1</source>
        <translation>الإصدار %1</translation>
    </message>
    <message>
        <source>Shows whether the WUXAgent runs, where it is installed and which version it is, and stops, starts and restarts it.</source>
        <translation>تعرض ما إذا كان WUXAgent قيد التشغيل ومكان تثبيته وإصداره، وتتيح إيقافه وبدء تشغيله وإعادة تشغيله.</translation>
    </message>
    <message>
        <source>Copyright © 2026 the makers of the WUXAgent. All rights reserved.</source>
        <translation>حقوق النشر © 2026 لمطوّري WUXAgent. جميع الحقوق محفوظة.</translation>
    </message>
</context>
</TS>
