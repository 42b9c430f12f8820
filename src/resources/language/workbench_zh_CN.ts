<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN">
<context>
    <name>BlockBox</name>
    <message>
        <source>An address has 4 hexadecimal digits, or 16.</source>
        <translation>地址是 4 位或 16 位十六进制数。</translation>
    </message>
    <message>
        <source>Address, character %1: %2.</source>
        <translation>地址，第 %1 个字符：%2。</translation>
    </message>
    <message>
        <source>Changed words of %1 aren&apos;t written yet: write or revert them first.</source>
        <translation>%1 的修改尚未写入：请先写入或还原。</translation>
    </message>
    <message>
        <source>Writing the configuration of %1 ...</source>
        <translation>正在写入 %1 的配置……</translation>
    </message>
    <message>
        <source>Reading the configuration of %1 ...</source>
        <translation>正在读取 %1 的配置……</translation>
    </message>
    <message>
        <source>The device %1 holds something else than was written: see the words in bold.</source>
        <translation>设备 %1 中的内容与写入的不同：请看粗体的字。</translation>
    </message>
    <message>
        <source>Configuration</source>
        <translation>配置</translation>
    </message>
    <message>
        <source>Configuration of %1 on channel %2, %3</source>
        <translation>%1 的配置，信道 %2，%3</translation>
    </message>
    <message>
        <source>Address:</source>
        <translation>地址：</translation>
    </message>
    <message>
        <source>4 hexadecimal digits, or 16 for devices with long addresses. A device chosen fills in the first bytes of its answer.</source>
        <translation>4 位十六进制数，长地址设备为 16 位。选中设备时会填入其应答的前几个字节。</translation>
    </message>
    <message>
        <source>Channel:</source>
        <translation>信道：</translation>
    </message>
    <message>
        <source>Rate:</source>
        <translation>速率：</translation>
    </message>
    <message>
        <source>words of the configuration</source>
        <translation>配置的各个字</translation>
    </message>
    <message>
        <source>then: %1</source>
        <translation>其后：%1</translation>
    </message>
    <message>
        <source>The bytes that follow the words.</source>
        <translation>各个字之后的字节。</translation>
    </message>
    <message>
        <source>Read &amp;block</source>
        <translation>读取配置(&amp;B)</translation>
    </message>
    <message>
        <source>Write</source>
        <translation>写入</translation>
    </message>
    <message>
        <source>Re&amp;vert</source>
        <translation>还原(&amp;V)</translation>
    </message>
</context>
<context>
    <name>BlockModel</name>
    <message>
        <source>a word has 8 hexadecimal digits</source>
        <translation>一个字是 8 位十六进制数</translation>
    </message>
    <message>
        <source>Word %1: %2.</source>
        <translation>字 %1：%2。</translation>
    </message>
    <message>
        <source>word %1</source>
        <translation>字 %1</translation>
    </message>
    <message>
        <source>To write</source>
        <translation>待写入</translation>
    </message>
    <message>
        <source>In the device</source>
        <translation>设备中</translation>
    </message>
</context>
<context>
    <name>CnetWords</name>
    <message>
        <source>The search is over, devices found: %1.</source>
        <translation>搜索结束，找到设备：%1 个。</translation>
    </message>
    <message>
        <source>Nobody answered on these %1 pairs of channel and rate: are the devices on? A longer time-out gives them more time.</source>
        <translation>在这 %1 个信道与速率的组合上没有应答：设备开机了吗？延长超时可给它们更多时间。</translation>
    </message>
    <message>
        <source>No module reported itself: are they on? Listen for a longer time.</source>
        <translation>没有模块上报：它们开机了吗？请延长收听时间。</translation>
    </message>
    <message>
        <source>The search was stopped after %1 pairs, devices found: %2.</source>
        <translation>搜索在 %1 个组合后停止，找到设备：%2 个。</translation>
    </message>
    <message>
        <source>The search was stopped, devices found: %1.</source>
        <translation>搜索已停止，找到设备：%1 个。</translation>
    </message>
    <message>
        <source>The local device refuses a channel or rate of this search: leave it out.</source>
        <translation>本地设备拒绝了此次搜索中的一个信道或速率：请去掉它。</translation>
    </message>
    <message>
        <source>The local device can&apos;t be tuned, so the search has ended: is it on? Check its port, rate and format.</source>
        <translation>无法设置本地设备的信道，搜索已结束：它开机了吗？请检查端口、速率和格式。</translation>
    </message>
    <message>
        <source>The configuration of %1 is written and read back.</source>
        <translation>%1 的配置已写入并回读。</translation>
    </message>
    <message>
        <source>The configuration of %1 is read.</source>
        <translation>%1 的配置已读取。</translation>
    </message>
    <message>
        <source>The work on the configuration of %1 was stopped.</source>
        <translation>对 %1 配置的操作已停止。</translation>
    </message>
    <message>
        <source>The local device refuses this channel and rate.</source>
        <translation>本地设备拒绝此信道和速率。</translation>
    </message>
    <message>
        <source>The local device can&apos;t be tuned: is it on? Check its port, rate and format.</source>
        <translation>无法设置本地设备的信道：它开机了吗？请检查端口、速率和格式。</translation>
    </message>
    <message>
        <source>The device %1 refuses this configuration: read what it holds.</source>
        <translation>设备 %1 拒绝此配置：请读取其当前内容。</translation>
    </message>
    <message>
        <source>The device %1 doesn&apos;t confirm the new configuration: read what it holds.</source>
        <translation>设备 %1 没有确认新配置：请读取其当前内容。</translation>
    </message>
    <message>
        <source>The device %1 doesn&apos;t answer: check its address and that it is on, or give it a longer time-out.</source>
        <translation>设备 %1 没有应答：请检查其地址以及是否开机，或延长超时。</translation>
    </message>
</context>
<context>
    <name>ConnectionBar</name>
    <message>
        <source>Link</source>
        <translation>链路</translation>
    </message>
    <message>
        <source>Frame</source>
        <translation>帧</translation>
    </message>
    <message>
        <source>%1, character %2: %3</source>
        <translation>%1，第 %2 个字符：%3</translation>
    </message>
    <message>
        <source>&amp;Connect</source>
        <translation>连接(&amp;C)</translation>
    </message>
    <message>
        <source>Dis&amp;connect</source>
        <translation>断开(&amp;C)</translation>
    </message>
    <message>
        <source>not connected</source>
        <translation>未连接</translation>
    </message>
    <message>
        <source>connecting ...</source>
        <translation>正在连接……</translation>
    </message>
    <message>
        <source>connected</source>
        <translation>已连接</translation>
    </message>
    <message>
        <source>closing ...</source>
        <translation>正在关闭……</translation>
    </message>
    <message>
        <source>Lin&amp;k:</source>
        <translation>链路(&amp;K)：</translation>
    </message>
    <message>
        <source>link as text</source>
        <translation>文本形式的链路</translation>
    </message>
    <message>
        <source>As tarnwickctl takes it after --link.</source>
        <translation>与 tarnwickctl 的 --link 之后的写法相同。</translation>
    </message>
    <message>
        <source>C&amp;hoose...</source>
        <translation>选择(&amp;H)...</translation>
    </message>
    <message>
        <source>F&amp;rame:</source>
        <translation>帧(&amp;R)：</translation>
    </message>
    <message>
        <source>frame as text</source>
        <translation>文本形式的帧</translation>
    </message>
    <message>
        <source>As tarnwickctl takes it after --frame.</source>
        <translation>与 tarnwickctl 的 --frame 之后的写法相同。</translation>
    </message>
    <message>
        <source>E&amp;dit...</source>
        <translation>编辑(&amp;D)...</translation>
    </message>
    <message>
        <source>Cop&amp;y</source>
        <translation>复制(&amp;Y)</translation>
    </message>
    <message>
        <source>Copies link and frame as options of tarnwickctl.</source>
        <translation>把链路和帧复制为 tarnwickctl 的选项。</translation>
    </message>
    <message>
        <source> ms</source>
        <translation> 毫秒</translation>
    </message>
    <message>
        <source>How long to wait for an answer, and for a connection.</source>
        <translation>等待应答和建立连接的最长时间。</translation>
    </message>
    <message>
        <source>&amp;Log</source>
        <translation>日志(&amp;L)</translation>
    </message>
    <message>
        <source>Log every exchange and what the tools do.</source>
        <translation>记录每次收发以及各工具的动作。</translation>
    </message>
    <message>
        <source>Ti&amp;me-out:</source>
        <translation>超时(&amp;M)：</translation>
    </message>
    <message>
        <source>Record to</source>
        <translation>录制到</translation>
    </message>
    <message>
        <source>Captures (*.pcapng)</source>
        <translation>抓包文件 (*.pcapng)</translation>
    </message>
    <message>
        <source>Stop recording</source>
        <translation>停止录制</translation>
    </message>
    <message>
        <source>Record...</source>
        <translation>录制...</translation>
    </message>
    <message>
        <source>Recording into %1. Ends by %2.</source>
        <translation>正在录制到 %1。按 %2 结束。</translation>
    </message>
    <message>
        <source>Records all that passes the links into a capture (%1).</source>
        <translation>把经过链路的所有数据录制到抓包文件（%1）。</translation>
    </message>
    <message>
        <source>There is no link to a device: connect first.</source>
        <translation>没有到设备的链路：请先连接。</translation>
    </message>
    <message>
        <source>The link works for another page: wait for its end, or stop it.</source>
        <translation>链路正被其他页面使用：请等待其结束，或停止它。</translation>
    </message>
</context>
<context>
    <name>DeviceBox</name>
    <message>
        <source>The module</source>
        <translation>模块</translation>
    </message>
    <message>
        <source>Software:</source>
        <translation>软件：</translation>
    </message>
    <message>
        <source>Hardware:</source>
        <translation>硬件：</translation>
    </message>
    <message>
        <source>Mode:</source>
        <translation>模式：</translation>
    </message>
    <message>
        <source>Page:</source>
        <translation>页：</translation>
    </message>
    <message>
        <source>MTU:</source>
        <translation>MTU：</translation>
    </message>
    <message>
        <source>not reported</source>
        <translation>未报告</translation>
    </message>
    <message>
        <source>boot code</source>
        <translation>引导程序</translation>
    </message>
    <message>
        <source>application</source>
        <translation>应用程序</translation>
    </message>
    <message>
        <source>%1 bytes</source>
        <translation>%1 字节</translation>
    </message>
</context>
<context>
    <name>DeviceTable</name>
    <message>
        <source>Channel</source>
        <translation>信道</translation>
    </message>
    <message>
        <source>Rate</source>
        <translation>速率</translation>
    </message>
    <message>
        <source>What it said</source>
        <translation>应答内容</translation>
    </message>
    <message>
        <source>Times</source>
        <translation>次数</translation>
    </message>
</context>
<context>
    <name>ExchangePage</name>
    <message>
        <source>Payload, character %1: %2.</source>
        <translation>负载，第 %1 个字符：%2。</translation>
    </message>
    <message>
        <source>There is nothing to send: type the bytes first.</source>
        <translation>没有可发送的内容：请先输入字节。</translation>
    </message>
    <message>
        <source>A payload has at most %1 bytes, not %2.</source>
        <translation>负载最多 %1 字节，现在是 %2 字节。</translation>
    </message>
    <message>
        <source>Waiting for the reply ...</source>
        <translation>正在等待应答……</translation>
    </message>
    <message>
        <source>The command is on the clipboard.</source>
        <translation>命令已复制到剪贴板。</translation>
    </message>
    <message>
        <source>The command is on the clipboard. Disconnect before it runs: a port has one user.</source>
        <translation>命令已复制到剪贴板。运行前请先断开：一个端口只能有一个使用者。</translation>
    </message>
    <message>
        <source>&amp;Payload:</source>
        <translation>负载(&amp;P)：</translation>
    </message>
    <message>
        <source>Bytes as 01 02 03, or a text with the escapes \r \n \t \e \0 \\ and \x41. Enter sends it.</source>
        <translation>形如 01 02 03 的字节，或可含转义 \r \n \t \e \0 \\ 和 \x41 的文本。按回车发送。</translation>
    </message>
    <message>
        <source>hexadecimal</source>
        <translation>十六进制</translation>
    </message>
    <message>
        <source>text</source>
        <translation>文本</translation>
    </message>
    <message>
        <source>how the payload is typed</source>
        <translation>负载的输入方式</translation>
    </message>
    <message>
        <source>Reply, &amp;bytes at most:</source>
        <translation>应答最多字节(&amp;B)：</translation>
    </message>
    <message>
        <source>An exchange ends when so many bytes of payload have come, or after the time-out.</source>
        <translation>收到这么多字节的负载或超时后，收发结束。</translation>
    </message>
    <message>
        <source>&amp;Send</source>
        <translation>发送(&amp;S)</translation>
    </message>
    <message>
        <source>exchanges so far</source>
        <translation>已有的收发</translation>
    </message>
    <message>
        <source>Enter puts a request back into the line above.</source>
        <translation>按回车把请求放回上面的输入行。</translation>
    </message>
    <message>
        <source>the exchange chosen, as payload and on the wire</source>
        <translation>所选收发的负载和线上内容</translation>
    </message>
    <message>
        <source>Copy &amp;as command</source>
        <translation>复制为命令(&amp;A)</translation>
    </message>
    <message>
        <source>Copies what does the same with tarnwickctl in a shell.</source>
        <translation>复制一条在终端中用 tarnwickctl 完成同样操作的命令。</translation>
    </message>
    <message>
        <source>Use a&amp;gain</source>
        <translation>再次使用(&amp;G)</translation>
    </message>
    <message>
        <source>Clear his&amp;tory</source>
        <translation>清空历史(&amp;T)</translation>
    </message>
    <message>
        <source>Stopping after the exchange under way ...</source>
        <translation>当前收发完成后停止……</translation>
    </message>
</context>
<context>
    <name>ExchangeRecord</name>
    <message>
        <source>... and %1 bytes more</source>
        <translation>……还有 %1 字节</translation>
    </message>
    <message>
        <source>%1 ms</source>
        <translation>%1 毫秒</translation>
    </message>
    <message>
        <source>Answered after %1, bytes of payload: %2.</source>
        <translation>%1后收到应答，负载字节数：%2。</translation>
    </message>
    <message>
        <source>The frame could not be sent: what is below the frame didn&apos;t take it; the log shows why.</source>
        <translation>帧未能发送：其下层没有接收；原因见日志。</translation>
    </message>
    <message>
        <source>Nothing came within %1 ms: is the device on? Check rate, format and frame, or give it a longer time-out.</source>
        <translation>%1 毫秒内没有收到任何内容：设备开机了吗？请检查速率、格式和帧，或延长超时。</translation>
    </message>
    <message>
        <source>What came is no frame of %1: check rate, format and frame.</source>
        <translation>收到的不是 %1 的帧：请检查速率、格式和帧。</translation>
    </message>
    <message>
        <source>The exchange was stopped before it was sent.</source>
        <translation>收发在发送前已停止。</translation>
    </message>
    <message>
        <source>Request, bytes of payload: %1</source>
        <translation>请求，负载字节数：%1</translation>
    </message>
    <message>
        <source>%1: sent on the wire, bytes: %2</source>
        <translation>%1：线上发送字节数：%2</translation>
    </message>
    <message>
        <source>%1: received on the wire, bytes: %2</source>
        <translation>%1：线上接收字节数：%2</translation>
    </message>
    <message>
        <source>Reply after %1, bytes of payload: %2</source>
        <translation>%1后的应答，负载字节数：%2</translation>
    </message>
</context>
<context>
    <name>ExchangeTable</name>
    <message>
        <source>not sent</source>
        <translation>未发送</translation>
    </message>
    <message>
        <source>nothing in time</source>
        <translation>超时无应答</translation>
    </message>
    <message>
        <source>no frame</source>
        <translation>不是帧</translation>
    </message>
    <message>
        <source>link lost</source>
        <translation>链路断开</translation>
    </message>
    <message>
        <source>stopped</source>
        <translation>已停止</translation>
    </message>
    <message>
        <source>Time</source>
        <translation>时间</translation>
    </message>
    <message>
        <source>Request</source>
        <translation>请求</translation>
    </message>
    <message>
        <source>Reply</source>
        <translation>应答</translation>
    </message>
    <message>
        <source>After</source>
        <translation>用时</translation>
    </message>
</context>
<context>
    <name>FirmwareFile</name>
    <message>
        <source>Choose a firmware file first.</source>
        <translation>请先选择固件文件。</translation>
    </message>
    <message>
        <source>There is no file %1: check its name.</source>
        <translation>没有文件 %1：请检查文件名。</translation>
    </message>
    <message>
        <source>%1 is no file: choose a firmware file.</source>
        <translation>%1 不是文件：请选择固件文件。</translation>
    </message>
    <message>
        <source>The file %1 can&apos;t be read: check its rights.</source>
        <translation>文件 %1 无法读取：请检查权限。</translation>
    </message>
    <message>
        <source>The file %1 is empty: look how it was made.</source>
        <translation>文件 %1 是空的：请检查它是如何生成的。</translation>
    </message>
    <message>
        <source>The file %1 is too large: %2 bytes, and no module takes more than %3.</source>
        <translation>文件 %1 太大：有 %2 字节，而模块最多接受 %3 字节。</translation>
    </message>
</context>
<context>
    <name>FirmwarePage</name>
    <message>
        <source>Firmware file</source>
        <translation>固件文件</translation>
    </message>
    <message>
        <source>%1 bytes</source>
        <translation>%1 字节</translation>
    </message>
    <message>
        <source>There is no link to a module: connect first, or add a link.</source>
        <translation>没有通往模块的链路：请先连接，或添加链路。</translation>
    </message>
    <message>
        <source>Stopping after the exchange under way ...</source>
        <translation>当前收发完成后停止……</translation>
    </message>
    <message>
        <source>Save results</source>
        <translation>保存结果</translation>
    </message>
    <message>
        <source>Tables (*.csv)</source>
        <translation>表格 (*.csv)</translation>
    </message>
    <message>
        <source>The results are in %1.</source>
        <translation>结果已保存到 %1。</translation>
    </message>
    <message>
        <source>The file %1 can&apos;t be written (%2): choose another place.</source>
        <translation>文件 %1 无法写入（%2）：请换个位置。</translation>
    </message>
    <message>
        <source>%1 of %2 modules hold the file; the table says what became of each.</source>
        <translation>%2 个模块中有 %1 个已写入该文件；表中列出了每个模块的结果。</translation>
    </message>
    <message>
        <source>Drop a file here, or choose one</source>
        <translation>将文件拖到这里，或选择一个</translation>
    </message>
    <message>
        <source>&amp;Browse...</source>
        <translation>浏览(&amp;B)...</translation>
    </message>
    <message>
        <source>&amp;Add link...</source>
        <translation>添加链路(&amp;A)...</translation>
    </message>
    <message>
        <source>Remo&amp;ve</source>
        <translation>移除(&amp;V)</translation>
    </message>
    <message>
        <source>&amp;Start</source>
        <translation>开始(&amp;S)</translation>
    </message>
    <message>
        <source>S&amp;top</source>
        <translation>停止(&amp;T)</translation>
    </message>
    <message>
        <source>modules and their results</source>
        <translation>模块及其结果</translation>
    </message>
    <message>
        <source>progress of the module chosen</source>
        <translation>所选模块的进度</translation>
    </message>
    <message>
        <source>U&amp;pgrade file:</source>
        <translation>升级文件(&amp;P)：</translation>
    </message>
    <message>
        <source>Save results...</source>
        <translation>保存结果...</translation>
    </message>
</context>
<context>
    <name>FrameBoxes</name>
    <message>
        <source>example of a frame</source>
        <translation>帧的示例</translation>
    </message>
    <message>
        <source>A payload of three bytes as it goes out, the first byte on the left.</source>
        <translation>三字节负载发送时的样子，最左边是第一个字节。</translation>
    </message>
    <message>
        <source>payload</source>
        <translation>负载</translation>
    </message>
</context>
<context>
    <name>FramerDialog</name>
    <message>
        <source>payload, CRC</source>
        <translation>负载、CRC</translation>
    </message>
    <message>
        <source>address, payload, CRC</source>
        <translation>地址、负载、CRC</translation>
    </message>
    <message>
        <source>1 to 16 bytes before the payload</source>
        <translation>负载前的 1 到 16 字节</translation>
    </message>
    <message>
        <source>to a cnet device of that address</source>
        <translation>发往该地址的 cnet 设备</translation>
    </message>
    <message>
        <source>markers around the payload</source>
        <translation>负载前后的标记</translation>
    </message>
    <message>
        <source>send commands of a Dorv module</source>
        <translation>Dorv 模块的发送命令</translation>
    </message>
    <message>
        <source>Frame</source>
        <translation>帧</translation>
    </message>
    <message>
        <source>&amp;Framers, the one nearest to the link first (F2 changes one):</source>
        <translation>成帧器，最靠近链路的在最前（F2 修改）(&amp;F)：</translation>
    </message>
    <message>
        <source>&amp;Add</source>
        <translation>添加(&amp;A)</translation>
    </message>
    <message>
        <source>&amp;Remove</source>
        <translation>移除(&amp;R)</translation>
    </message>
    <message>
        <source>&amp;Up</source>
        <translation>上移(&amp;U)</translation>
    </message>
    <message>
        <source>&amp;Down</source>
        <translation>下移(&amp;D)</translation>
    </message>
</context>
<context>
    <name>HeatLegend</name>
    <message>
        <source>not in this search</source>
        <translation>不在搜索范围</translation>
    </message>
    <message>
        <source>waiting</source>
        <translation>等待</translation>
    </message>
    <message>
        <source>being searched</source>
        <translation>正在搜索</translation>
    </message>
    <message>
        <source>nobody</source>
        <translation>无应答</translation>
    </message>
    <message>
        <source>one device</source>
        <translation>一个设备</translation>
    </message>
    <message>
        <source>two</source>
        <translation>两个</translation>
    </message>
    <message>
        <source>three</source>
        <translation>三个</translation>
    </message>
    <message>
        <source>more</source>
        <translation>更多</translation>
    </message>
</context>
<context>
    <name>HeatMapView</name>
    <message>
        <source>map of channels and rates</source>
        <translation>信道与速率图</translation>
    </message>
    <message>
        <source>no device found</source>
        <translation>未找到设备</translation>
    </message>
</context>
<context>
    <name>HeatWords</name>
    <message>
        <source>Channel %1, %2</source>
        <translation>信道 %1，%2</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1：%2</translation>
    </message>
    <message>
        <source>one device answered.</source>
        <translation>一个设备应答。</translation>
    </message>
    <message>
        <source>%1 devices answered.</source>
        <translation>%1 个设备应答。</translation>
    </message>
    <message>
        <source>not in this search.</source>
        <translation>不在此次搜索范围。</translation>
    </message>
    <message>
        <source>not searched yet.</source>
        <translation>尚未搜索。</translation>
    </message>
    <message>
        <source>being searched.</source>
        <translation>正在搜索。</translation>
    </message>
    <message>
        <source>nobody answered.</source>
        <translation>没有应答。</translation>
    </message>
</context>
<context>
    <name>LinkChoice</name>
    <message>
        <source>No serial port is chosen: choose one.</source>
        <translation>尚未选择串口：请选择一个。</translation>
    </message>
    <message>
        <source>There is no serial port: plug an adapter in.</source>
        <translation>没有串口：请插入适配器。</translation>
    </message>
    <message>
        <source>No link does that protocol: choose TCP Client, UDP or UDP Broadcast.</source>
        <translation>链路不支持该协议：请选择 TCP Client、UDP 或 UDP Broadcast。</translation>
    </message>
    <message>
        <source>The address is missing: type one.</source>
        <translation>缺少地址：请输入。</translation>
    </message>
    <message>
        <source>Only serial and TCP/IP links can be used: choose one.</source>
        <translation>只能使用串口和 TCP/IP 链路：请选择其一。</translation>
    </message>
</context>
<context>
    <name>LinkRecorder</name>
    <message>
        <source>The system starts no thread for the recording: end other programs.</source>
        <translation>系统无法为录制启动线程：请关闭其他程序。</translation>
    </message>
    <message>
        <source>Recording into %1.</source>
        <translation>正在录制到 %1。</translation>
    </message>
    <message>
        <source>There is no recording (%1): choose another file.</source>
        <translation>未能录制（%1）：请选择其他文件。</translation>
    </message>
    <message>
        <source>The recording is in %1.</source>
        <translation>录制内容已保存在 %1。</translation>
    </message>
    <message>
        <source>The recording in %1 has gaps: %2 bytes are missing.</source>
        <translation>%1 中的录制不完整：缺少 %2 字节。</translation>
    </message>
    <message>
        <source>%1 can&apos;t be written (%2): make room, or plug the disk in.</source>
        <translation>%1 无法写入（%2）：请腾出空间，或接上磁盘。</translation>
    </message>
    <message>
        <source>The disk of %1 is too slow, and bytes are being lost: record to another one.</source>
        <translation>%1 所在磁盘太慢，正在丢失数据：请录制到其他磁盘。</translation>
    </message>
    <message>
        <source>%1 is written again; bytes that were lost: %2.</source>
        <translation>%1 已恢复写入；丢失字节数：%2。</translation>
    </message>
</context>
<context>
    <name>LinkWords</name>
    <message>
        <source>There is no port %1: plug the adapter in, or choose another port.</source>
        <translation>没有端口 %1：请插入适配器，或选择其他端口。</translation>
    </message>
    <message>
        <source>%1 is no serial port: choose another one.</source>
        <translation>%1 不是串口：请选择其他端口。</translation>
    </message>
    <message>
        <source>You have no rights to the port %1: have yourself added to its group, mostly dialout, and log in again.</source>
        <translation>没有端口 %1 的权限：请把自己加入它所属的组（通常是 dialout），然后重新登录。</translation>
    </message>
    <message>
        <source>The port %1 is in use: end the other program, or choose another port.</source>
        <translation>端口 %1 正被占用：请结束占用它的程序，或选择其他端口。</translation>
    </message>
    <message>
        <source>The port %1 is in use by %2: end that, or choose another port.</source>
        <translation>端口 %1 正被 %2 占用：请结束它，或选择其他端口。</translation>
    </message>
    <message>
        <source>The port %1 doesn&apos;t take this rate or format: choose another one.</source>
        <translation>端口 %1 不支持该速率或格式：请另选。</translation>
    </message>
    <message>
        <source>The port %1 can&apos;t be opened (%2): plug the adapter in again.</source>
        <translation>端口 %1 无法打开（%2）：请重新插入适配器。</translation>
    </message>
    <message>
        <source>There is no connection to %1: check address, port and firewall, and that the device is on.</source>
        <translation>无法连接 %1：请检查地址、端口和防火墙，以及设备是否已开机。</translation>
    </message>
    <message>
        <source>The system starts no thread for the link: end other programs.</source>
        <translation>系统无法为链路启动线程：请结束其他程序。</translation>
    </message>
    <message>
        <source>The port %1 has gone: plug the adapter in again and connect anew.</source>
        <translation>端口 %1 已消失：请重新插入适配器并重新连接。</translation>
    </message>
    <message>
        <source>The connection to %1 is lost: check the cable or the network and connect anew.</source>
        <translation>与 %1 的连接已断开：请检查线缆或网络并重新连接。</translation>
    </message>
    <message>
        <source>What came from %1 is no answer: check rate, format and frame.</source>
        <translation>从 %1 收到的不是应答：请检查速率、格式和帧。</translation>
    </message>
    <message>
        <source>Nothing came from %1 in time: is the device on?</source>
        <translation>%1 未及时应答：设备开机了吗？</translation>
    </message>
    <message>
        <source>%1 fits several ports (%2): give more of the name.</source>
        <translation>%1 与多个端口相符（%2）：请把名称写得更完整。</translation>
    </message>
</context>
<context>
    <name>LogDock</name>
    <message>
        <source>Log</source>
        <translation>日志</translation>
    </message>
    <message>
        <source>show only lines with this text</source>
        <translation>只显示含有该文本的行</translation>
    </message>
    <message>
        <source>Fi&amp;nd:</source>
        <translation>查找(&amp;N)：</translation>
    </message>
    <message>
        <source>find this text in the log</source>
        <translation>在日志中查找该文本</translation>
    </message>
    <message>
        <source>Clear l&amp;og</source>
        <translation>清空日志(&amp;O)</translation>
    </message>
    <message>
        <source>log lines</source>
        <translation>日志行</translation>
    </message>
    <message>
        <source>Filter:</source>
        <translation>过滤：</translation>
    </message>
</context>
<context>
    <name>LogFeed</name>
    <message>
        <source>lines lost: %1</source>
        <translation>丢失行数：%1</translation>
    </message>
</context>
<context>
    <name>ModuleList</name>
    <message>
        <source>the connection above</source>
        <translation>上方的连接</translation>
    </message>
    <message>
        <source>Link</source>
        <translation>链路</translation>
    </message>
    <message>
        <source>Module</source>
        <translation>模块</translation>
    </message>
    <message>
        <source>State</source>
        <translation>状态</translation>
    </message>
    <message>
        <source>Progress</source>
        <translation>进度</translation>
    </message>
    <message>
        <source>Result</source>
        <translation>结果</translation>
    </message>
</context>
<context>
    <name>PageMapView</name>
    <message>
        <source>Page %1, bytes %2 to %3: %4. %5</source>
        <translation>第 %1 页，第 %2 到 %3 字节：%4。%5</translation>
    </message>
    <message>
        <source>The pages show here once the module has said how large they are.</source>
        <translation>模块报告页大小之后，这里显示各页。</translation>
    </message>
    <message>
        <source>map of the pages</source>
        <translation>页面图</translation>
    </message>
</context>
<context>
    <name>PageWords</name>
    <message>
        <source>unknown</source>
        <translation>未知</translation>
    </message>
    <message>
        <source>The module hasn&apos;t been asked about this page yet.</source>
        <translation>尚未向模块查询此页。</translation>
    </message>
    <message>
        <source>equal</source>
        <translation>相同</translation>
    </message>
    <message>
        <source>The module held this page already; it isn&apos;t sent.</source>
        <translation>模块中已有此页，不再发送。</translation>
    </message>
    <message>
        <source>differs</source>
        <translation>不同</translation>
    </message>
    <message>
        <source>The module holds something else here.</source>
        <translation>模块中此页的内容不同。</translation>
    </message>
    <message>
        <source>being sent</source>
        <translation>正在发送</translation>
    </message>
    <message>
        <source>Packets of this page are on their way.</source>
        <translation>此页的数据包正在发送。</translation>
    </message>
    <message>
        <source>sent</source>
        <translation>已发送</translation>
    </message>
    <message>
        <source>The module has accepted every packet of this page.</source>
        <translation>模块已接受此页的所有数据包。</translation>
    </message>
    <message>
        <source>failed</source>
        <translation>失败</translation>
    </message>
    <message>
        <source>All attempts for this page were used up.</source>
        <translation>此页的尝试次数已用完。</translation>
    </message>
</context>
<context>
    <name>RunSettingsBox</name>
    <message>
        <source>Settings of the run</source>
        <translation>升级设置</translation>
    </message>
    <message>
        <source>Packet len&amp;gth:</source>
        <translation>包长度(&amp;G)：</translation>
    </message>
    <message>
        <source>Attempts:</source>
        <translation>尝试次数：</translation>
    </message>
    <message>
        <source>Send interval:</source>
        <translation>发送间隔：</translation>
    </message>
    <message>
        <source>Reset wait:</source>
        <translation>复位等待：</translation>
    </message>
    <message>
        <source>Verify wait:</source>
        <translation>校验等待：</translation>
    </message>
    <message>
        <source>Most bytes of the file in one packet; the module may take fewer.</source>
        <translation>一个包中文件数据的最大字节数；模块可能接受得更少。</translation>
    </message>
    <message>
        <source>How often a packet or a question is sent before giving up.</source>
        <translation>放弃之前，一个包或一次查询最多发送的次数。</translation>
    </message>
    <message>
        <source>Pause after each packet, for slow modules.</source>
        <translation>每个包之后的停顿，用于较慢的模块。</translation>
    </message>
    <message>
        <source>How long the module takes to start its boot code.</source>
        <translation>模块启动引导程序所需的时间。</translation>
    </message>
    <message>
        <source>How long the module takes to verify the whole file.</source>
        <translation>模块校验整个文件所需的时间。</translation>
    </message>
    <message>
        <source> ms</source>
        <translation> 毫秒</translation>
    </message>
</context>
<context>
    <name>SearchBox</name>
    <message>
        <source>an address to ask for has 4 hexadecimal digits</source>
        <translation>要询问的地址是 4 位十六进制数</translation>
    </message>
    <message>
        <source>Channels</source>
        <translation>信道</translation>
    </message>
    <message>
        <source>Only address</source>
        <translation>只搜地址</translation>
    </message>
    <message>
        <source>%1, character %2: %3.</source>
        <translation>%1，第 %2 个字符：%3。</translation>
    </message>
    <message>
        <source>There is no rate to search: choose at least one.</source>
        <translation>没有可搜索的速率：请至少选择一个。</translation>
    </message>
    <message>
        <source>Devices:</source>
        <translation>设备：</translation>
    </message>
    <message>
        <source>cnet devices are asked on each channel and rate; Dorv modules report themselves.</source>
        <translation>cnet 设备在每个信道和速率上被询问；Dorv 模块会自行上报。</translation>
    </message>
    <message>
        <source>Ch&amp;annels:</source>
        <translation>信道(&amp;A)：</translation>
    </message>
    <message>
        <source>From 9 to 30, as in 9-12,30.</source>
        <translation>9 到 30，如 9-12,30。</translation>
    </message>
    <message>
        <source>Search at this rate.</source>
        <translation>以此速率搜索。</translation>
    </message>
    <message>
        <source>Only address:</source>
        <translation>只搜地址：</translation>
    </message>
    <message>
        <source>everybody</source>
        <translation>全部</translation>
    </message>
    <message>
        <source>Asks for this address alone, 4 hexadecimal digits.</source>
        <translation>只询问此地址，4 位十六进制数。</translation>
    </message>
    <message>
        <source>Lon&amp;g answers</source>
        <translation>长应答(&amp;G)</translation>
    </message>
    <message>
        <source>Asks for the longer answers of devices with long addresses.</source>
        <translation>要求长地址设备给出较长的应答。</translation>
    </message>
    <message>
        <source>Listen for:</source>
        <translation>收听时长：</translation>
    </message>
    <message>
        <source> s</source>
        <translation> 秒</translation>
    </message>
</context>
<context>
    <name>SearchPage</name>
    <message>
        <source>Stopping after the exchange under way ...</source>
        <translation>当前收发完成后停止……</translation>
    </message>
    <message>
        <source>devices found</source>
        <translation>找到的设备</translation>
    </message>
    <message>
        <source>A click, or Enter, reads the configuration of a cnet device.</source>
        <translation>单击或按回车可读取 cnet 设备的配置。</translation>
    </message>
    <message>
        <source>progress of the search</source>
        <translation>搜索进度</translation>
    </message>
    <message>
        <source>&amp;Start</source>
        <translation>开始(&amp;S)</translation>
    </message>
    <message>
        <source>S&amp;top</source>
        <translation>停止(&amp;T)</translation>
    </message>
</context>
<context>
    <name>SettingHints</name>
    <message>
        <source>Frequency of the radio.</source>
        <translation>射频频率。</translation>
    </message>
    <message>
        <source>Spreading factor: a higher one reaches farther and is slower.</source>
        <translation>扩频因子：越大传得越远，也越慢。</translation>
    </message>
    <message>
        <source>Bandwidth of the radio: a narrower one reaches farther and is slower.</source>
        <translation>射频带宽：越窄传得越远，也越慢。</translation>
    </message>
    <message>
        <source>Coding rate: how many bits go out for four of the payload.</source>
        <translation>编码率：每 4 位载荷实际发送的位数。</translation>
    </message>
    <message>
        <source>Transmit power, as the module counts it.</source>
        <translation>发射功率，按模块自己的单位。</translation>
    </message>
    <message>
        <source>Length of the preamble that is sent.</source>
        <translation>发送前导码的长度。</translation>
    </message>
    <message>
        <source>Length of the preamble that is expected.</source>
        <translation>接收前导码的长度。</translation>
    </message>
    <message>
        <source>Turns the radio&apos;s receiver off.</source>
        <translation>关闭射频接收。</translation>
    </message>
    <message>
        <source>How received payload is given out: as it is, or in hexadecimal.</source>
        <translation>收到的载荷如何输出：原样，或十六进制。</translation>
    </message>
    <message>
        <source>Turns off that the module repeats each command.</source>
        <translation>关闭模块对命令的回显。</translation>
    </message>
    <message>
        <source>Serial port of the module: bits per second, data bits, parity, stop bits. Written last; connect anew at the new rate.</source>
        <translation>模块的串口：波特率、数据位、校验、停止位。最后写入；请用新速率重新连接。</translation>
    </message>
    <message>
        <source>How serial data is packed for the radio.</source>
        <translation>串口数据如何打包后无线发送。</translation>
    </message>
    <message>
        <source>When the interrupt pin acts, and its value.</source>
        <translation>中断引脚何时动作及其数值。</translation>
    </message>
    <message>
        <source>Sleep of the module, and what wakes it; TIMEOUT is 0 with level. Written last.</source>
        <translation>模块的休眠及唤醒方式；按电平唤醒时 TIMEOUT 为 0。最后写入。</translation>
    </message>
    <message>
        <source>Address of the device in its network.</source>
        <translation>设备在网络中的地址。</translation>
    </message>
    <message>
        <source>How the device joins its network; only the way is read, not its value.</source>
        <translation>设备的入网方式；只能读出方式，读不出数值。</translation>
    </message>
    <message>
        <source>LoRaWAN class of the device.</source>
        <translation>设备的 LoRaWAN 类别。</translation>
    </message>
    <message>
        <source>Whether what is sent must be confirmed.</source>
        <translation>发送的数据是否需要确认。</translation>
    </message>
    <message>
        <source>Port number of sent data.</source>
        <translation>发送数据的端口号。</translation>
    </message>
    <message>
        <source>Index of the transmit power.</source>
        <translation>发射功率的序号。</translation>
    </message>
    <message>
        <source>Index of the data rate.</source>
        <translation>数据速率的序号。</translation>
    </message>
    <message>
        <source>How often unconfirmed data is repeated.</source>
        <translation>无需确认的数据重复发送的次数。</translation>
    </message>
    <message>
        <source>Whether the network adapts the data rate.</source>
        <translation>是否由网络调整数据速率。</translation>
    </message>
    <message>
        <source>Whether the data rate adapts while joining.</source>
        <translation>入网时是否调整数据速率。</translation>
    </message>
    <message>
        <source>The three values of the link check.</source>
        <translation>链路检查的三个数值。</translation>
    </message>
    <message>
        <source>Frequency of one channel, in Hz: the channel&apos;s number first.</source>
        <translation>某个信道的频率，单位 Hz：先写信道号。</translation>
    </message>
    <message>
        <source>Level, as the module counts it.</source>
        <translation>级别，按模块自己的单位。</translation>
    </message>
    <message>
        <source>The three values of the heartbeat.</source>
        <translation>心跳的三个数值。</translation>
    </message>
    <message>
        <source>The two limits of the power.</source>
        <translation>功率的两个限值。</translation>
    </message>
    <message>
        <source>EUI of the device, 8 bytes.</source>
        <translation>设备 EUI，8 字节。</translation>
    </message>
    <message>
        <source>EUI of the application, 8 bytes.</source>
        <translation>应用 EUI，8 字节。</translation>
    </message>
    <message>
        <source>Key of the application, 16 bytes. Keep files with it to yourself.</source>
        <translation>应用密钥，16 字节。含有它的文件请勿外传。</translation>
    </message>
    <message>
        <source>Session key of the application, 16 bytes.</source>
        <translation>应用会话密钥，16 字节。</translation>
    </message>
    <message>
        <source>Session key of the network, 16 bytes.</source>
        <translation>网络会话密钥，16 字节。</translation>
    </message>
</context>
<context>
    <name>SettingValue</name>
    <message>
        <source>%1 takes: %2</source>
        <translation>%1 的格式：%2</translation>
    </message>
    <message>
        <source>%1 bytes in hexadecimal</source>
        <translation>%1 个字节的十六进制</translation>
    </message>
    <message>
        <source>0x0 to 0x%1</source>
        <translation>0x0 到 0x%1</translation>
    </message>
    <message>
        <source>%1 to %2</source>
        <translation>%1 到 %2</translation>
    </message>
</context>
<context>
    <name>SettingsFile</name>
    <message>
        <source>there is no setting %1</source>
        <translation>没有名为 %1 的参数</translation>
    </message>
    <message>
        <source>%1 is there twice</source>
        <translation>%1 出现了两次</translation>
    </message>
    <message>
        <source>%1, line %2: %3.</source>
        <translation>%1 第 %2 行：%3。</translation>
    </message>
    <message>
        <source>There are no settings in %1.</source>
        <translation>%1 中没有参数。</translation>
    </message>
    <message>
        <source>%1 is no file.</source>
        <translation>%1 不是文件。</translation>
    </message>
    <message>
        <source>The file %1 can&apos;t be read (%2).</source>
        <translation>文件 %1 无法读取（%2）。</translation>
    </message>
    <message>
        <source>%1 is too large for a file of settings.</source>
        <translation>%1 太大，不像参数文件。</translation>
    </message>
    <message>
        <source>The file %1 can&apos;t be written (%2): choose another place.</source>
        <translation>文件 %1 无法写入（%2）：请换个位置。</translation>
    </message>
</context>
<context>
    <name>SettingsPage</name>
    <message>
        <source>Nothing of the selection can be read: select other rows.</source>
        <translation>所选参数都不可读：请选择其他行。</translation>
    </message>
    <message>
        <source>There is nothing to write: type a value, or compare with a file.</source>
        <translation>没有要写入的值：请输入一个值，或与文件比较。</translation>
    </message>
    <message>
        <source>Nothing is written, as a value has a mistake. %1: %2.</source>
        <translation>有一个值不正确，未写入任何参数。%1：%2。</translation>
    </message>
    <message>
        <source>Settings are no payload: disconnect, and choose a frame without dorv.</source>
        <translation>参数不是载荷：请断开连接，并选择不含 dorv 的帧。</translation>
    </message>
    <message>
        <source>Stopping after the exchange under way ...</source>
        <translation>当前收发完成后停止……</translation>
    </message>
    <message>
        <source>Compare with file</source>
        <translation>与文件比较</translation>
    </message>
    <message>
        <source>Settings (%1)</source>
        <translation>参数文件 (%1)</translation>
    </message>
    <message>
        <source>All files (*)</source>
        <translation>所有文件 (*)</translation>
    </message>
    <message>
        <source>Values not written yet</source>
        <translation>有未写入的值</translation>
    </message>
    <message>
        <source>Settings that are typed, not written, and different in the file: %1. Take the values of the file?</source>
        <translation>已输入但未写入、且与文件不同的参数：%1 个。改用文件中的值吗？</translation>
    </message>
    <message>
        <source>Settings in %1: %2. To be written: %3.</source>
        <translation>%1 中的参数：%2 个。待写入：%3 个。</translation>
    </message>
    <message>
        <source>There are no values to save: read all, or type some.</source>
        <translation>没有可保存的值：请先读取全部，或输入一些值。</translation>
    </message>
    <message>
        <source>Save to file</source>
        <translation>保存到文件</translation>
    </message>
    <message>
        <source>Settings in %1: %2.</source>
        <translation>%1 中的参数：%2 个。</translation>
    </message>
    <message>
        <source>settings of the module</source>
        <translation>模块的参数</translation>
    </message>
    <message>
        <source>settings read or written</source>
        <translation>已读写的参数</translation>
    </message>
    <message>
        <source>&amp;Begin command mode</source>
        <translation>进入命令模式(&amp;B)</translation>
    </message>
    <message>
        <source>A module that is busy with radio traffic takes commands only after this.</source>
        <translation>正忙于无线收发的模块只有在此之后才接受命令。</translation>
    </message>
    <message>
        <source>Read &amp;all</source>
        <translation>全部读取(&amp;A)</translation>
    </message>
    <message>
        <source>Read selection</source>
        <translation>读取所选</translation>
    </message>
    <message>
        <source>Com&amp;pare with file...</source>
        <translation>与文件比较(&amp;P)...</translation>
    </message>
    <message>
        <source>Fills the column Value from a file; what the module holds otherwise is in bold.</source>
        <translation>用文件填写“值”一列；与模块不同的以粗体显示。</translation>
    </message>
    <message>
        <source>Sa&amp;ve to file...</source>
        <translation>保存到文件(&amp;V)...</translation>
    </message>
    <message>
        <source>Write what differ&amp;s</source>
        <translation>写入不同项(&amp;S)</translation>
    </message>
    <message>
        <source>Writes the values in bold, and reads them back.</source>
        <translation>写入粗体的值，并读回核对。</translation>
    </message>
    <message>
        <source>Write selection</source>
        <translation>写入所选</translation>
    </message>
    <message>
        <source>S&amp;top</source>
        <translation>停止(&amp;T)</translation>
    </message>
</context>
<context>
    <name>SettingsTable</name>
    <message>
        <source>waiting</source>
        <translation>等待中</translation>
    </message>
    <message>
        <source>refused: %1</source>
        <translation>被拒绝：%1</translation>
    </message>
    <message>
        <source>reads back as something else</source>
        <translation>读回的值不同</translation>
    </message>
    <message>
        <source>no answer</source>
        <translation>无应答</translation>
    </message>
    <message>
        <source>echoed</source>
        <translation>被回显</translation>
    </message>
    <message>
        <source>differs</source>
        <translation>不同</translation>
    </message>
    <message>
        <source>read</source>
        <translation>已读取</translation>
    </message>
    <message>
        <source>written, and read back</source>
        <translation>已写入并读回</translation>
    </message>
    <message>
        <source>written</source>
        <translation>已写入</translation>
    </message>
    <message>
        <source>can only be written</source>
        <translation>只能写入</translation>
    </message>
    <message>
        <source>Setting</source>
        <translation>参数</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>值</translation>
    </message>
    <message>
        <source>In the module</source>
        <translation>模块中的值</translation>
    </message>
    <message>
        <source>State</source>
        <translation>状态</translation>
    </message>
    <message>
        <source>Range</source>
        <translation>范围</translation>
    </message>
    <message>
        <source>Unit</source>
        <translation>单位</translation>
    </message>
</context>
<context>
    <name>SettingsVerdict</name>
    <message>
        <source>Settings written: %1 of %2.</source>
        <translation>已写入参数：%1/%2。</translation>
    </message>
    <message>
        <source>Settings read: %1 of %2.</source>
        <translation>已读取参数：%1/%2。</translation>
    </message>
    <message>
        <source>The module takes commands.</source>
        <translation>模块已可接受命令。</translation>
    </message>
    <message>
        <source>The module refuses the command mode.</source>
        <translation>模块拒绝进入命令模式。</translation>
    </message>
    <message>
        <source>%1 The column State says what became of the others.</source>
        <translation>%1其余参数的情况见“状态”一列。</translation>
    </message>
    <message>
        <source>The module doesn&apos;t answer: check that it is on, the rate, the format, and the frame, which mostly is none.</source>
        <translation>模块无应答：请检查它是否开机，以及速率、格式和帧（通常为 none）。</translation>
    </message>
    <message>
        <source>The module doesn&apos;t answer for %1: begin the command mode, and check the rate, the format, and the frame, which mostly is none.</source>
        <translation>模块对 %1 无应答：请进入命令模式，并检查速率、格式和帧（通常为 none）。</translation>
    </message>
    <message>
        <source>Stopped. %1</source>
        <translation>已停止。%1</translation>
    </message>
    <message>
        <source>The module repeats what it is sent: type off for the setting echo, and write it alone.</source>
        <translation>模块会回显收到的内容：请把参数 echo 填为 off，并单独写入它。</translation>
    </message>
</context>
<context>
    <name>StackText</name>
    <message>
        <source>nothing here</source>
        <translation>此处为空</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is unknown</source>
        <translation>“%1”无法识别</translation>
    </message>
    <message>
        <source>%1: %2 is one of %3</source>
        <translation>%1：%2 应为 %3 之一</translation>
    </message>
    <message>
        <source>%1 is a number from %2 to %3</source>
        <translation>%1 应为 %2 到 %3 的数</translation>
    </message>
    <message>
        <source>a count of data bits</source>
        <translation>数据位数</translation>
    </message>
    <message>
        <source>the parity</source>
        <translation>校验</translation>
    </message>
    <message>
        <source>the number of stop bits</source>
        <translation>停止位数</translation>
    </message>
    <message>
        <source>the name of a port is missing, such as /dev/ttyUSB0</source>
        <translation>缺少端口名，例如 /dev/ttyUSB0</translation>
    </message>
    <message>
        <source>the rate in bits per second</source>
        <translation>波特率</translation>
    </message>
    <message>
        <source>the flow control</source>
        <translation>流控</translation>
    </message>
    <message>
        <source>nothing is expected after the flow control</source>
        <translation>流控之后不应再有内容</translation>
    </message>
    <message>
        <source>a port</source>
        <translation>端口号</translation>
    </message>
    <message>
        <source>the closing bracket of the IPv6 address is missing</source>
        <translation>IPv6 地址缺少右方括号</translation>
    </message>
    <message>
        <source>the port is missing, as in %1</source>
        <translation>缺少端口号，应如 %1</translation>
    </message>
    <message>
        <source>a colon and the port follow the bracket</source>
        <translation>方括号之后应为冒号和端口号</translation>
    </message>
    <message>
        <source>an IPv6 address is written in brackets, as in [::1]:4001</source>
        <translation>IPv6 地址写在方括号中，如 [::1]:4001</translation>
    </message>
    <message>
        <source>the host is missing</source>
        <translation>缺少主机</translation>
    </message>
    <message>
        <source>a host has at most %1 characters</source>
        <translation>主机名最多 %1 个字符</translation>
    </message>
    <message>
        <source>raw sockets take an IPv4 address such as 10.0.0.5; names work with tcp: and udp:</source>
        <translation>原始套接字只接受如 10.0.0.5 的 IPv4 地址；主机名请用 tcp: 和 udp:</translation>
    </message>
    <message>
        <source>the kind of link is missing: write serial:%1</source>
        <translation>缺少链路类型：请写 serial:%1</translation>
    </message>
    <message>
        <source>the kind of link</source>
        <translation>链路类型</translation>
    </message>
    <message>
        <source>a colon and the port are missing, as in serial:/dev/ttyUSB0</source>
        <translation>缺少冒号和端口，应如 serial:/dev/ttyUSB0</translation>
    </message>
    <message>
        <source>a colon and the address are missing, as in tcp:10.0.0.5:4001</source>
        <translation>缺少冒号和地址，应如 tcp:10.0.0.5:4001</translation>
    </message>
    <message>
        <source>a framer</source>
        <translation>成帧器</translation>
    </message>
    <message>
        <source>more is needed, as in %1</source>
        <translation>还需要更多内容，如 %1</translation>
    </message>
    <message>
        <source>the address</source>
        <translation>地址</translation>
    </message>
    <message>
        <source>a prefix has 1 to 16 bytes, as in chan:05 or chan:1234</source>
        <translation>前缀为 1 到 16 字节，如 chan:05 或 chan:1234</translation>
    </message>
    <message>
        <source>a target has 4 hexadecimal digits, as in cnet:1234</source>
        <translation>目标为 4 位十六进制数，如 cnet:1234</translation>
    </message>
    <message>
        <source>the mode</source>
        <translation>模式</translation>
    </message>
    <message>
        <source>nothing is expected after %1</source>
        <translation>%1 之后不应再有内容</translation>
    </message>
    <message>
        <source>dorv works only directly on the link: write it first</source>
        <translation>dorv 只能直接用在链路上：请写在最前</translation>
    </message>
    <message>
        <source>dorv waits for lines, which tcp: and udp: links don&apos;t; use rawtcp: or rawudp:</source>
        <translation>dorv 需要按行等待，tcp: 和 udp: 链路不支持；请用 rawtcp: 或 rawudp:</translation>
    </message>
    <message>
        <source>a byte has two hexadecimal digits</source>
        <translation>一个字节为两位十六进制数</translation>
    </message>
    <message>
        <source>not a hexadecimal digit</source>
        <translation>不是十六进制数字</translation>
    </message>
    <message>
        <source>a number from %1 to %2 is needed, or a range such as 9-30</source>
        <translation>需要 %1 到 %2 的数，或如 9-30 的范围</translation>
    </message>
    <message>
        <source>a range has two ends, as in 9-30</source>
        <translation>范围有两端，如 9-30</translation>
    </message>
    <message>
        <source>the range runs backwards</source>
        <translation>范围前后颠倒</translation>
    </message>
    <message>
        <source>an escape is one of \r \n \t \e \0 \\ and \xHH; \c ends a text</source>
        <translation>转义为 \r \n \t \e \0 \\ 或 \xHH；\c 结束文本</translation>
    </message>
    <message>
        <source>one of %1 is needed</source>
        <translation>必须是 %1 之一</translation>
    </message>
    <message>
        <source>%1 bytes in hexadecimal</source>
        <translation>需要 %1 个字节的十六进制</translation>
    </message>
</context>
<context>
    <name>Transfer</name>
    <message>
        <source>%1 of %2 bytes</source>
        <translation>%1 / %2 字节</translation>
    </message>
    <message>
        <source>%1 left</source>
        <translation>剩余 %1</translation>
    </message>
</context>
<context>
    <name>UpgradeModule</name>
    <message>
        <source>ready</source>
        <translation>就绪</translation>
    </message>
    <message>
        <source>not connected</source>
        <translation>未连接</translation>
    </message>
    <message>
        <source>opening the link</source>
        <translation>正在打开链路</translation>
    </message>
    <message>
        <source>asking the module</source>
        <translation>正在查询模块</translation>
    </message>
    <message>
        <source>starting the boot code</source>
        <translation>正在启动引导程序</translation>
    </message>
    <message>
        <source>sending</source>
        <translation>正在发送</translation>
    </message>
    <message>
        <source>verifying</source>
        <translation>正在校验</translation>
    </message>
    <message>
        <source>done</source>
        <translation>完成</translation>
    </message>
    <message>
        <source>failed</source>
        <translation>失败</translation>
    </message>
    <message>
        <source>stopped</source>
        <translation>已停止</translation>
    </message>
</context>
<context>
    <name>UpgradeVerdict</name>
    <message>
        <source>Start again: pages that have arrived aren&apos;t sent a second time.</source>
        <translation>请重新开始：已到达的页不会再次发送。</translation>
    </message>
    <message>
        <source>no attempt was made</source>
        <translation>没有进行尝试</translation>
    </message>
    <message>
        <source>no reply came in time</source>
        <translation>未及时收到应答</translation>
    </message>
    <message>
        <source>a reply was none to what was asked</source>
        <translation>应答与请求不符</translation>
    </message>
    <message>
        <source>it reports a page size or an MTU of 0</source>
        <translation>它报告的页大小或 MTU 为 0</translation>
    </message>
    <message>
        <source>a packet has at least 4 bytes</source>
        <translation>一个包至少 4 字节</translation>
    </message>
    <message>
        <source>the module refused a packet</source>
        <translation>模块拒绝了一个包</translation>
    </message>
    <message>
        <source>what it holds differs from the file</source>
        <translation>模块中的内容与文件不同</translation>
    </message>
    <message>
        <source>it can&apos;t be opened</source>
        <translation>无法打开</translation>
    </message>
    <message>
        <source>it is larger than 2 GiB</source>
        <translation>大于 2 GiB</translation>
    </message>
    <message>
        <source>there isn&apos;t enough memory for it</source>
        <translation>内存不足</translation>
    </message>
    <message>
        <source>it can&apos;t be read to its end</source>
        <translation>无法完整读取</translation>
    </message>
    <message>
        <source>%1: the module holds all %2 bytes and says so, after %3 s.</source>
        <translation>%1：模块已确认写入全部 %2 字节，用时 %3 秒。</translation>
    </message>
    <message>
        <source>It has been restarted.</source>
        <translation>模块已重启。</translation>
    </message>
    <message>
        <source>The module refused all %1 attempts to send the packet at offset %2.</source>
        <translation>模块拒绝了偏移 %2 处数据包的全部 %1 次发送。</translation>
    </message>
    <message>
        <source>Maybe the file (%1 bytes) is larger than the module&apos;s memory; if it isn&apos;t, try a packet length of 256.</source>
        <translation>文件（%1 字节）可能大于模块的存储器；如果不是，请试用包长度 256。</translation>
    </message>
    <message>
        <source>The transfer failed: %1.</source>
        <translation>传输失败：%1。</translation>
    </message>
    <message>
        <source>On a bad line, a packet length of 256 helps.</source>
        <translation>线路不好时，可用包长度 256。</translation>
    </message>
    <message>
        <source>The upgrade was stopped.</source>
        <translation>升级已停止。</translation>
    </message>
    <message>
        <source>The module may wait in its boot code.</source>
        <translation>模块可能停留在引导程序中。</translation>
    </message>
    <message>
        <source>The file %1: %2.</source>
        <translation>文件 %1：%2。</translation>
    </message>
    <message>
        <source>Choose it anew, or another one.</source>
        <translation>请重新选择该文件，或另选一个。</translation>
    </message>
    <message>
        <source>Wrong firmware: %1 is not for the module %2.</source>
        <translation>固件不符：%1 不适用于模块 %2。</translation>
    </message>
    <message>
        <source>Choose the file whose name begins with the module&apos;s name and an underscore.</source>
        <translation>请选择文件名以模块名和下划线开头的文件。</translation>
    </message>
    <message>
        <source>The module doesn&apos;t say what it is: %1.</source>
        <translation>模块未报告其信息：%1。</translation>
    </message>
    <message>
        <source>Check that it is on, and the rate, the format and the frame.</source>
        <translation>请检查它是否开机，以及速率、格式和帧。</translation>
    </message>
    <message>
        <source>The module didn&apos;t start its boot code.</source>
        <translation>模块未启动引导程序。</translation>
    </message>
    <message>
        <source>It may take longer: start again with a reset wait of 5000 ms.</source>
        <translation>可能需要更长时间：请把复位等待设为 5000 毫秒后重新开始。</translation>
    </message>
    <message>
        <source>The module doesn&apos;t say that it holds the file: %1.</source>
        <translation>模块未确认已写入该文件：%1。</translation>
    </message>
    <message>
        <source>It stays in its boot code.</source>
        <translation>它停留在引导程序中。</translation>
    </message>
    <message>
        <source>%1 %2</source>
        <translation>%1%2</translation>
    </message>
    <message>
        <source>The link has gone: if the module doesn&apos;t restart, switch it off and on.</source>
        <translation>链路已断开：如果模块没有重启，请将其断电再上电。</translation>
    </message>
</context>
<context>
    <name>WorkbenchWindow</name>
    <message>
        <source>Upgrade under way</source>
        <translation>正在升级</translation>
    </message>
    <message>
        <source>An upgrade is under way. Stop it and close?
The module stays in its boot code; another run completes what this one began.</source>
        <translation>正在升级。要停止并关闭吗？
模块会停留在引导程序中；再次升级会继续完成。</translation>
    </message>
    <message>
        <source>Tarnwick Workbench</source>
        <translation>Tarnwick 工作台</translation>
    </message>
    <message>
        <source>F&amp;irmware</source>
        <translation>固件(&amp;I)</translation>
    </message>
    <message>
        <source>&amp;File</source>
        <translation>文件(&amp;F)</translation>
    </message>
    <message>
        <source>&amp;Quit</source>
        <translation>退出(&amp;Q)</translation>
    </message>
    <message>
        <source>&amp;Find in the log</source>
        <translation>在日志中查找(&amp;F)</translation>
    </message>
    <message>
        <source>Find &amp;next</source>
        <translation>查找下一个(&amp;N)</translation>
    </message>
    <message>
        <source>&amp;Language</source>
        <translation>语言(&amp;L)</translation>
    </message>
    <message>
        <source>As the &amp;desktop</source>
        <translation>跟随桌面(&amp;D)</translation>
    </message>
    <message>
        <source>&amp;Colours</source>
        <translation>颜色(&amp;C)</translation>
    </message>
    <message>
        <source>&amp;Light</source>
        <translation>浅色(&amp;L)</translation>
    </message>
    <message>
        <source>D&amp;ark</source>
        <translation>深色(&amp;A)</translation>
    </message>
    <message>
        <source>Vie&amp;w</source>
        <translation>视图(&amp;W)</translation>
    </message>
    <message>
        <source>Fil&amp;ter the log</source>
        <translation>过滤日志(&amp;T)</translation>
    </message>
    <message>
        <source>Link in use</source>
        <translation>链路正在使用</translation>
    </message>
    <message>
        <source>A search or an exchange is under way. Stop it and close?</source>
        <translation>正在搜索或收发。要停止并关闭吗？</translation>
    </message>
    <message>
        <source>S&amp;earch</source>
        <translation>搜索(&amp;E)</translation>
    </message>
    <message>
        <source>E&amp;xchanges</source>
        <translation>收发(&amp;X)</translation>
    </message>
    <message>
        <source>Settings under way</source>
        <translation>正在读写参数</translation>
    </message>
    <message>
        <source>Settings are being read or written. Stop after the one under way and close?</source>
        <translation>正在读写参数。要在当前参数完成后停止并关闭吗？</translation>
    </message>
    <message>
        <source>Mod&amp;ule settings</source>
        <translation>模块参数(&amp;U)</translation>
    </message>
    <message>
        <source>Values not written</source>
        <translation>参数未写入</translation>
    </message>
    <message>
        <source>Values have been typed that aren&apos;t written to a device. Close and lose them?</source>
        <translation>有已输入的值尚未写入设备。要关闭并丢弃它们吗？</translation>
    </message>
</context>
</TS>
