<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en_US" sourcelanguage="en">
<context>
    <name>CnetCfg</name>
    <message>
        <source>250 kbps</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>500 kbps</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>1 Mbps</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>N/A bps</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>cfg: link is NULL!!, please check</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>cfg: link is not open!!, please check</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>cfg: read time out</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>cfg: read a short frame, lenght = %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>cfg: read a invalid frame, head or end flag not match</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>read bytes (%1) is greater then needed (%2)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>response cmd (%1) is not we needed (%2)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>cfg: set device to chan %1, %2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>cfg: searching chan %1 with %2 ...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>cfg: set local device chan and baud failed</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>HashSelectDialog</name>
    <message>
        <source>CRC &amp; Hash</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>CRC32</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>SUM8</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Base64 Decode(HEX with space)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Base64 Decode(ASCII)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Base64 Encode</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>CRC16</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>XOR8</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>SUM16</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>CRC8</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Append to send window</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>SHA1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Base64 Decode(HEX no space)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>MD5</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>MSB</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 (Bit wise NOT: %2)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 %2 (Bit wise NOT: %3 %4)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 %2 %3 %4 (Bit wise NOT: %5 %6 %7 %8)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>result</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Loader</name>
    <message>
        <source>ldr: get device info ...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>ldr: get device infomation failed, error or no reply</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>ldr: get devie information failed, invalid reply</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>ldr: device ROM page size %1B, MTU %2B</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>ldr: module name: </source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>ldr: wrong firmware (%1) for module (%2) !!</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>ldr: module name matched</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>hard info (%1 bytes): %2 %3 %4 %5</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>ldr: set device enter boot mode ... [done]</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>ldr: device reboot</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>ldr: data sent, device no response</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>ldr: data sent, packet was broken at receiver</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>ldr: packet transfer aborted!</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>ldr: retry %1 bytes at offset %2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>ldr: transfer aborted!</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>ldr: sending %1 bytes, progress %2/%3 (%4%)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>ldr: block(offset=%1, size=%2) verify failed, no reply</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>ldr: block(offset=%1, size=%2) verify failed, invalid reply</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>ldr: block(offset=%1, size=%2) verify ... [OK]</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>ldr: block(offset=%1, size=%2) updating ...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>ldr: block(offset=%1, size=%2) CRC not match, please retry</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>ldr: Upgrade thread started</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>ldr: wait device enter boot ...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>ldr: Upgrade progress aborted</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>ldr: Sending firmware file ...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>ldr: Firmware send failed, please retry</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>ldr: Firmware verify ...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>ldr: total took %1 seconds</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>wrong firmware (%1)
for module     (%2)
Please select the right firmware</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Upgrade in progress, please wait</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Open file failed</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Get device infomation failed</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Get device info failed after device enter boot mode</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>device not in boot mode, try again</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>File verify failed</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>File sent and verified OK</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Alloc memory (%1 bytes) failed</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>ldr: device ROM page size %1B, MTU %2B: neither may be 0</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>ldr: packet length below 4 bytes, please set a larger one</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>File too large (%1 bytes), %2 bytes at most</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Read file failed (%1 of %2 bytes)</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>please select a file to send</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>file %1 can&apos;t be read: %2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>file sent: %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>MainWindow</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>receive area</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;help</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>auto clear</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source> lines</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>hex display</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;save ...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;pause</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;extend&lt;&lt;</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>frame mode</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source> ms</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>time stamp</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>display TX</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;clear</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;CRC &amp;&amp; Hash</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>save to &amp;file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;browse...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>send area</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;open</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;send</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>hex mode</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;raw text</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>send file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;auto send</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>count </source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>loop</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>operation</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>selected/alias</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>hex/string</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>send in turn at:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;load configuration ...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;store configuration</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>store configuration &amp;as ...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;about</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>about Tarnwick</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>note</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Corvane Serial Tool
</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Chose configration file to load</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Ini files (*.ini)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Chose configration file to save</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>loading language %1 failed</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;resume</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Chose file to save</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>save to file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>please select a file to save</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>open file failed</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Text file (*.txt)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>save window</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>port not opened</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>port write error: </source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>char &apos;%1&apos; at offset %2 is not a hex number</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>format error at %1: %2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>format error at %1: \</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>please open a port first</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Chose file to send</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Any file (*.*)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No serial port exist in system</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Open %1 failed</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;close</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 removed</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>send</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No strings found in list</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;hide&gt;&gt;</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>not a file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>file can&apos;t be written: %1: %2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>find</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>text to find</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>case sensitive</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>previous hit</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>next hit</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>close the find bar</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>not found</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 found</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 of %2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>lines that auto clear keeps</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>silence between two frames</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>file to save to</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>interval of auto send</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>how often to send, 0 for without end</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>prepared strings</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>interval of send in turn</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>move the row up</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>move the row down</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>add a row</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>delete the row</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>control panel</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>panel of prepared strings</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>progress of the file that is sent</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 opens as soon as the bytes of the last session are out</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>QFramerCnet</name>
    <message>
        <source>cnet: read frame failed or time out, nbytes=%1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>cnet: frame not from target (%1H)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>cnet: not a valid data frame, nbytes=%1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>cnet: local response failed (%1)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>cnet: local no response</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>cnet: response error, lost sync ?</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>cnet: send failed (errno=%1H)</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>QFramerRwlt</name>
    <message>
        <source>rwlt: read frame failed or time out, nbytes=%1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>rwlt: not a valid data frame, nbytes=%1</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>QLinkCfgDlg</name>
    <message>
        <source>Serial</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>TCPIP</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>CAN</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>USB</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Link config</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Sorry, not implemented</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Link type</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>QLinkSerial</name>
    <message>
        <source>Serial port already opened</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Open %1 failed</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>ser: getchar (%1)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>ser: putchar (%1)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>ser: read    (%1)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>ser: write   (%1)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>ser: readline(%1)</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>QLinkTcpip</name>
    <message>
        <source>tcpip: drop %1 bytes</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>tcpip: getchar (%1)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>tcpip: putchar (%1)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>tcpip: read    (%1)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>tcpip: write   (%1)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>tcpip: write failed</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>tcpip: write failed, connection not opened</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>tcpip: readline failed, connection not opened</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>tcpip: protocol not supported</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>tcpip: connected failed</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>tcpip: unconnected</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>tcpip: looking up host</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>tcpip: connecting ...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>tcpip: connected</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>tcpip: socket bound</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>tcpip: listening ...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>tcpip: closing ...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>tcpip: unknow state</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>QLinkWinsock</name>
    <message>
        <source>tcpip: drop %1 bytes</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>tcpip: getchar [%1]</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>tcpip: putchar [%1]</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>tcpip: read(%1)[%2]</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>tcpip: write   [%1]</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>tcpip: write failed, connection not opened</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>winsock: WSAStartup failed</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>tcpip: protocol not supported</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>tcpip: create socket failed</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>tcpip: set socket sending timeout failed</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>tcpip: set socket receiving timeout failed</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>tcpip: set socket broadcast opt failed</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>tcpip: connect to host %1:%2 failed</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>QSerialCfgWidget</name>
    <message>
        <source>custom</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>none</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>odd</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>even</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>mark</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>space</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>off</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>hard ware</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>xon/xoff</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source> ms</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Port:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Baud Rate:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Data Bits:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Stop Bits:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Parity:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Flow Ctrl:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Timeout:</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>QTcpipCfgWidget</name>
    <message>
        <source>Form</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>IP version:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Protocol:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>TCP Client</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>TCP Server</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>UDP</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>UDP Multicast</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>UDP Broadcast</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>IPv4 address:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>IPv6 address:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Remote port:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Local port:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Random</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Time out:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source> ms</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>QextSerialPort</name>
    <message>
        <source>the port is open already</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 bytes wait to be sent, there is no room for %2 more</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the device has gone</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 of %2 bytes were not taken in time</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the device gives no settings</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the device refuses %1 bits/s and offers %2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>a polled port needs a QCoreApplication on this system</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>another program has locked the port; close it there, or choose another port</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the device refuses its settings</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the port has no control lines; a pseudo-terminal and some adapters have none</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the port can&apos;t send a break; a pseudo-terminal can&apos;t</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the port is not open</source>
        <translation type="unfinished"></translation>
    </message>
</context>
</TS>
