<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN" sourcelanguage="en">
<context>
    <name>HashSelectDialog</name>
    <message>
        <source>CRC &amp; Hash</source>
        <translation>CRC &amp; 哈希</translation>
    </message>
    <message>
        <source>&amp;Append to send window</source>
        <translation>(&amp;A) 结果添加到发送窗口数据后面</translation>
    </message>
    <message>
        <source>Base64 Encode</source>
        <translation>Base64编码</translation>
    </message>
    <message>
        <source>Base64 Decode(ASCII)</source>
        <translation>Base64解码（ASCII）</translation>
    </message>
    <message>
        <source>Base64 Decode(HEX no space)</source>
        <translation>Base64解码（HEX无空格）</translation>
    </message>
    <message>
        <source>Base64 Decode(HEX with space)</source>
        <translation>Base64解码（HEX有空格）</translation>
    </message>
    <message>
        <source>CRC32</source>
        <translatorcomment>the names and formats are the same in every language</translatorcomment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>SUM8</source>
        <translatorcomment>the names and formats are the same in every language</translatorcomment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>CRC16</source>
        <translatorcomment>the names and formats are the same in every language</translatorcomment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>XOR8</source>
        <translatorcomment>the names and formats are the same in every language</translatorcomment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>SUM16</source>
        <translatorcomment>the names and formats are the same in every language</translatorcomment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>CRC8</source>
        <translatorcomment>the names and formats are the same in every language</translatorcomment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>SHA1</source>
        <translatorcomment>the names and formats are the same in every language</translatorcomment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>MD5</source>
        <translatorcomment>the names and formats are the same in every language</translatorcomment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>MSB</source>
        <translatorcomment>the names and formats are the same in every language</translatorcomment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 (Bit wise NOT: %2)</source>
        <translatorcomment>the names and formats are the same in every language</translatorcomment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 %2 (Bit wise NOT: %3 %4)</source>
        <translatorcomment>the names and formats are the same in every language</translatorcomment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 %2 %3 %4 (Bit wise NOT: %5 %6 %7 %8)</source>
        <translatorcomment>the names and formats are the same in every language</translatorcomment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>result</source>
        <translation>结果</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>please select a file to send</source>
        <translation>请选择发送文件</translation>
    </message>
    <message>
        <source>file %1 can&apos;t be read: %2</source>
        <translation>无法读取文件“%1”：%2</translation>
    </message>
    <message>
        <source>file sent: %1</source>
        <translation>文件发送完毕：%1</translation>
    </message>
    <message>
        <source> lines</source>
        <translation> 行</translation>
    </message>
    <message>
        <source> ms</source>
        <translation> 毫秒</translation>
    </message>
    <message>
        <source>%1 removed</source>
        <translation>%1 已经移除</translation>
    </message>
    <message>
        <source>&amp;CRC &amp;&amp; Hash</source>
        <translation>CRC &amp;&amp; 哈希</translation>
    </message>
    <message>
        <source>&amp;about</source>
        <translation>关于(&amp;a)</translation>
    </message>
    <message>
        <source>&amp;auto send</source>
        <translation>自动发送(&amp;a)</translation>
    </message>
    <message>
        <source>&amp;browse...</source>
        <translation>浏览(&amp;b)...</translation>
    </message>
    <message>
        <source>&amp;clear</source>
        <translation>清除窗口(&amp;c)</translation>
    </message>
    <message>
        <source>&amp;close</source>
        <translation>关闭(&amp;c)</translation>
    </message>
    <message>
        <source>&amp;extend&lt;&lt;</source>
        <translation>扩展(&amp;e)&lt;&lt;</translation>
    </message>
    <message>
        <source>&amp;file</source>
        <translation>文件(&amp;f)</translation>
    </message>
    <message>
        <source>&amp;help</source>
        <translation>帮助(&amp;h)</translation>
    </message>
    <message>
        <source>&amp;hide&gt;&gt;</source>
        <translation>隐藏(&amp;h)&gt;&gt;</translation>
    </message>
    <message>
        <source>&amp;load configuration ...</source>
        <translation>加载配置文件(&amp;l)...</translation>
    </message>
    <message>
        <source>&amp;open</source>
        <translation>打开(&amp;o)</translation>
    </message>
    <message>
        <source>&amp;pause</source>
        <translation>暂停显示(&amp;p)</translation>
    </message>
    <message>
        <source>&amp;raw text</source>
        <translation>原始文本(&amp;r)</translation>
    </message>
    <message>
        <source>&amp;resume</source>
        <translation>恢复显示(&amp;r)</translation>
    </message>
    <message>
        <source>&amp;save ...</source>
        <translation>保存窗口(&amp;s)</translation>
    </message>
    <message>
        <source>&amp;send</source>
        <translation>发送(&amp;s)</translation>
    </message>
    <message>
        <source>&amp;store configuration</source>
        <translation>保存配置文件(&amp;s)</translation>
    </message>
    <message>
        <source>Any file (*.*)</source>
        <translation>任意文件 (*.*)</translation>
    </message>
    <message>
        <source>Chose configration file to load</source>
        <translation>选择要加载的文件</translation>
    </message>
    <message>
        <source>Chose configration file to save</source>
        <translation>选择保存文件</translation>
    </message>
    <message>
        <source>Chose file to save</source>
        <translation>选择保存文件</translation>
    </message>
    <message>
        <source>Chose file to send</source>
        <translation>选择发送文件</translation>
    </message>
    <message>
        <source>Ini files (*.ini)</source>
        <translation>Ini 文件 (*.ini)</translation>
    </message>
    <message>
        <source>Corvane Serial Tool
</source>
        <translation>Corvane串口工具
</translation>
    </message>
    <message>
        <source>No serial port exist in system</source>
        <translation>系统中没有串口设备</translation>
    </message>
    <message>
        <source>No strings found in list</source>
        <translation>没有定义要发送的数据</translation>
    </message>
    <message>
        <source>Open %1 failed</source>
        <translation>打开“%1”失败</translation>
    </message>
    <message>
        <source>Text file (*.txt)</source>
        <translation>文本文件 (*.txt)</translation>
    </message>
    <message>
        <source>about Tarnwick</source>
        <translation>关于Tarnwick</translation>
    </message>
    <message>
        <source>auto clear</source>
        <translation>自动清除</translation>
    </message>
    <message>
        <source>char &apos;%1&apos; at offset %2 is not a hex number</source>
        <translation>第 %2 个字符 &apos;%1&apos; 不是16进制数字</translation>
    </message>
    <message>
        <source>count </source>
        <translation>次数 </translation>
    </message>
    <message>
        <source>display TX</source>
        <translation>显示发送</translation>
    </message>
    <message>
        <source>format error at %1: %2</source>
        <translation>第 %1 个字符格式错误：%2</translation>
    </message>
    <message>
        <source>format error at %1: \</source>
        <translation>第 %1 个字符格式错误： \</translation>
    </message>
    <message>
        <source>frame mode</source>
        <translation>按帧显示</translation>
    </message>
    <message>
        <source>hex display</source>
        <translation>16进制显示</translation>
    </message>
    <message>
        <source>hex mode</source>
        <translation>16进制模式</translation>
    </message>
    <message>
        <source>hex/string</source>
        <translation>16进制/预置数据</translation>
    </message>
    <message>
        <source>loading language %1 failed</source>
        <translation>加载语言“%1”失败</translation>
    </message>
    <message>
        <source>loop</source>
        <translation>回发模式</translation>
    </message>
    <message>
        <source>note</source>
        <translation>注意</translation>
    </message>
    <message>
        <source>open file failed</source>
        <translation>打开文件失败</translation>
    </message>
    <message>
        <source>operation</source>
        <translation>操作</translation>
    </message>
    <message>
        <source>please open a port first</source>
        <translation>请先打开串口</translation>
    </message>
    <message>
        <source>please select a file to save</source>
        <translation>请选择保存文件</translation>
    </message>
    <message>
        <source>port not opened</source>
        <translation>串口没打开</translation>
    </message>
    <message>
        <source>port write error: </source>
        <translation>串口写错误: </translation>
    </message>
    <message>
        <source>receive area</source>
        <translation>接收区</translation>
    </message>
    <message>
        <source>save to &amp;file</source>
        <translation>保存到文件</translation>
    </message>
    <message>
        <source>save to file</source>
        <translation>保存到文件</translation>
    </message>
    <message>
        <source>save window</source>
        <translation>保存窗口</translation>
    </message>
    <message>
        <source>selected/alias</source>
        <translation>选中/别名</translation>
    </message>
    <message>
        <source>send</source>
        <translation>发送</translation>
    </message>
    <message>
        <source>send area</source>
        <translation>发送区</translation>
    </message>
    <message>
        <source>send file</source>
        <translation>发送文件</translation>
    </message>
    <message>
        <source>send in turn at:</source>
        <translation>轮流发送，间隔：</translation>
    </message>
    <message>
        <source>store configuration &amp;as ...</source>
        <translation>配置文件另存为(&amp;a)...</translation>
    </message>
    <message>
        <source>time stamp</source>
        <translation>显示时间戳</translation>
    </message>
    <message>
        <source>MainWindow</source>
        <translatorcomment>never seen: the title is set by the program</translatorcomment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>not a file</source>
        <translation>不是文件</translation>
    </message>
    <message>
        <source>file can&apos;t be written: %1: %2</source>
        <translation>文件无法写入：%1：%2</translation>
    </message>
    <message>
        <source>find</source>
        <translation>查找</translation>
    </message>
    <message>
        <source>text to find</source>
        <translation>要查找的文本</translation>
    </message>
    <message>
        <source>case sensitive</source>
        <translation>区分大小写</translation>
    </message>
    <message>
        <source>previous hit</source>
        <translation>上一处</translation>
    </message>
    <message>
        <source>next hit</source>
        <translation>下一处</translation>
    </message>
    <message>
        <source>close the find bar</source>
        <translation>关闭查找栏</translation>
    </message>
    <message>
        <source>not found</source>
        <translation>没有找到</translation>
    </message>
    <message>
        <source>%1 found</source>
        <translation>找到 %1 处</translation>
    </message>
    <message>
        <source>%1 of %2</source>
        <translation>第 %1 处，共 %2 处</translation>
    </message>
    <message>
        <source>lines that auto clear keeps</source>
        <translation>自动清除时保留的行数</translation>
    </message>
    <message>
        <source>silence between two frames</source>
        <translation>两帧之间的间隔</translation>
    </message>
    <message>
        <source>file to save to</source>
        <translation>保存到的文件</translation>
    </message>
    <message>
        <source>interval of auto send</source>
        <translation>自动发送的间隔</translation>
    </message>
    <message>
        <source>how often to send, 0 for without end</source>
        <translation>发送次数，0 表示不限次数</translation>
    </message>
    <message>
        <source>prepared strings</source>
        <translation>预置数据列表</translation>
    </message>
    <message>
        <source>interval of send in turn</source>
        <translation>轮流发送的间隔</translation>
    </message>
    <message>
        <source>move the row up</source>
        <translation>上移一行</translation>
    </message>
    <message>
        <source>move the row down</source>
        <translation>下移一行</translation>
    </message>
    <message>
        <source>add a row</source>
        <translation>添加一行</translation>
    </message>
    <message>
        <source>delete the row</source>
        <translation>删除该行</translation>
    </message>
    <message>
        <source>control panel</source>
        <translation>控制面板</translation>
    </message>
    <message>
        <source>panel of prepared strings</source>
        <translation>预置数据面板</translation>
    </message>
    <message>
        <source>progress of the file that is sent</source>
        <translation>文件发送进度</translation>
    </message>
    <message>
        <source>%1 opens as soon as the bytes of the last session are out</source>
        <translation>上次会话的数据发送完后将打开 %1</translation>
    </message>
</context>
<context>
    <name>QLinkCfgDlg</name>
    <message>
        <source>Link config</source>
        <translation>链路配置</translation>
    </message>
    <message>
        <source>Link type</source>
        <translation>链路类型</translation>
    </message>
    <message>
        <source>Serial</source>
        <translation>串口</translation>
    </message>
    <message>
        <source>TCPIP</source>
        <translatorcomment>names and links that nobody can use yet</translatorcomment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>CAN</source>
        <translatorcomment>names and links that nobody can use yet</translatorcomment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>USB</source>
        <translatorcomment>names and links that nobody can use yet</translatorcomment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Sorry, not implemented</source>
        <translatorcomment>names and links that nobody can use yet</translatorcomment>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>QLinkSerial</name>
    <message>
        <source>Serial port already opened</source>
        <translation>串口已经打开</translation>
    </message>
    <message>
        <source>Open %1 failed</source>
        <translation>打开“%1”失败</translation>
    </message>
    <message>
        <source>ser: getchar (%1)</source>
        <translation>ser: 读字节 (%1)</translation>
    </message>
    <message>
        <source>ser: putchar (%1)</source>
        <translation>ser: 写字节 (%1)</translation>
    </message>
    <message>
        <source>ser: read    (%1)</source>
        <translation>ser: 读     (%1)</translation>
    </message>
    <message>
        <source>ser: write   (%1)</source>
        <translation>ser: 写     (%1)</translation>
    </message>
    <message>
        <source>ser: readline(%1)</source>
        <translation>ser: 读行   (%1)</translation>
    </message>
</context>
<context>
    <name>QSerialCfgWidget</name>
    <message>
        <source>Port:</source>
        <translation>端口：</translation>
    </message>
    <message>
        <source>Baud Rate:</source>
        <translation>波特率：</translation>
    </message>
    <message>
        <source>Data Bits:</source>
        <translation>数据位数：</translation>
    </message>
    <message>
        <source>Stop Bits:</source>
        <translation>停止位数：</translation>
    </message>
    <message>
        <source>Parity:</source>
        <translation>校验位：</translation>
    </message>
    <message>
        <source>Flow Ctrl:</source>
        <translation>流控：</translation>
    </message>
    <message>
        <source>Timeout:</source>
        <translation>超时：</translation>
    </message>
    <message>
        <source>custom</source>
        <translation>自定义</translation>
    </message>
    <message>
        <source>none</source>
        <translation>无</translation>
    </message>
    <message>
        <source>odd</source>
        <translation>奇校验</translation>
    </message>
    <message>
        <source>even</source>
        <translation>偶校验</translation>
    </message>
    <message>
        <source>mark</source>
        <translation>强制为高</translation>
    </message>
    <message>
        <source>space</source>
        <translation>强制为低</translation>
    </message>
    <message>
        <source>off</source>
        <translation>无</translation>
    </message>
    <message>
        <source>hard ware</source>
        <translation>硬件流控</translation>
    </message>
    <message>
        <source> ms</source>
        <translation> 毫秒</translation>
    </message>
    <message>
        <source>xon/xoff</source>
        <translatorcomment>the name of the method</translatorcomment>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>QTcpipCfgWidget</name>
    <message>
        <source> ms</source>
        <translation> 毫秒</translation>
    </message>
    <message>
        <source>Form</source>
        <translatorcomment>the terms of the network stand in English</translatorcomment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>IP version:</source>
        <translatorcomment>the terms of the network stand in English</translatorcomment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Protocol:</source>
        <translatorcomment>the terms of the network stand in English</translatorcomment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>TCP Client</source>
        <translatorcomment>the terms of the network stand in English</translatorcomment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>TCP Server</source>
        <translatorcomment>the terms of the network stand in English</translatorcomment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>UDP</source>
        <translatorcomment>the terms of the network stand in English</translatorcomment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>UDP Multicast</source>
        <translatorcomment>the terms of the network stand in English</translatorcomment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>UDP Broadcast</source>
        <translatorcomment>the terms of the network stand in English</translatorcomment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>IPv4 address:</source>
        <translatorcomment>the terms of the network stand in English</translatorcomment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>IPv6 address:</source>
        <translatorcomment>the terms of the network stand in English</translatorcomment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Remote port:</source>
        <translatorcomment>the terms of the network stand in English</translatorcomment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Local port:</source>
        <translatorcomment>the terms of the network stand in English</translatorcomment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Random</source>
        <translatorcomment>the terms of the network stand in English</translatorcomment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Time out:</source>
        <translatorcomment>the terms of the network stand in English</translatorcomment>
        <translation type="unfinished"></translation>
    </message>
</context>
</TS>
