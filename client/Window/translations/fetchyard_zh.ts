<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh">
    <context>
        <name>Actions</name>
        <message>
            <source>has ended already</source>
            <translation>已经结束</translation>
        </message>
        <message>
            <source>has no record to begin from; ask for it anew</source>
            <translation>没有可供继续的记录，请重新请求</translation>
        </message>
        <message>
            <source>its record can't be read</source>
            <translation>无法读取其记录</translation>
        </message>
        <message>
            <source>was brought back already</source>
            <translation>已经恢复</translation>
        </message>
        <message>
            <source>is on its way already</source>
            <translation>已在进行中</translation>
        </message>
        <message>
            <source>was deleted</source>
            <translation>已被删除</translation>
        </message>
        <message>
            <source>can't be deleted</source>
            <translation>无法删除</translation>
        </message>
        <message>
            <source>is on its way; stop it first</source>
            <translation>正在进行，请先停止</translation>
        </message>
        <message>
            <source>has no folder yet</source>
            <translation>还没有文件夹</translation>
        </message>
        <message>
            <source>its folder was removed: </source>
            <translation>其文件夹已被移除：</translation>
        </message>
        <message>
            <source>there is no report in its folder</source>
            <translation>其文件夹中没有报表</translation>
        </message>
        <message>
            <source>has ended, so what it made stays; remove it from the list</source>
            <translation>已经结束，其结果保留；请从列表移除</translation>
        </message>
    </context>
    <context>
        <name>ExportForm</name>
        <message>
            <source>videos need the numbers of their cameras</source>
            <translation>导出视频需要摄像机编号</translation>
        </message>
        <message>
            <source>videos need a begin and an end</source>
            <translation>导出视频需要开始和结束时间</translation>
        </message>
        <message>
            <source>numbers with commas between, as 1, 2, 7</source>
            <translation>请输入以逗号分隔的编号，例如 1, 2, 7</translation>
        </message>
        <message>
            <source>1000 cameras at most</source>
            <translation>最多 1000 台摄像机</translation>
        </message>
        <message>
            <source>the end must be behind the begin</source>
            <translation>结束时间必须晚于开始时间</translation>
        </message>
        <message>
            <source>a report is missing</source>
            <translation>缺少报表</translation>
        </message>
        <message>
            <source>a name can't hold a slash or be dots alone</source>
            <translation>名称不能包含斜杠，也不能只有点</translation>
        </message>
        <message>
            <source>too long: 200 bytes at most, a Chinese letter has 3</source>
            <translation>名称过长：最多 200 字节，一个汉字占 3 字节</translation>
        </message>
    </context>
    <context>
        <name>FetchyardClient::Banner</name>
        <message>
            <source>Notice</source>
            <translation>通知</translation>
        </message>
        <message>
            <source>Put this notice away</source>
            <translation>关闭此通知</translation>
        </message>
    </context>
    <context>
        <name>FetchyardClient::ExportForm</name>
        <message>
            <source>New export</source>
            <translation>新建导出</translation>
        </message>
        <message>
            <source>S&amp;tation</source>
            <translation>服务站(&amp;T)</translation>
        </message>
        <message>
            <source>Path of the report at the station</source>
            <translation>报表在服务站上的路径</translation>
        </message>
        <message>
            <source>&amp;Report</source>
            <translation>报表(&amp;R)</translation>
        </message>
        <message>
            <source>made of the present time</source>
            <translation>默认使用当前时间</translation>
        </message>
        <message>
            <source>&amp;Name</source>
            <translation>名称(&amp;N)</translation>
        </message>
        <message>
            <source>Choose the folder</source>
            <translation>选择文件夹</translation>
        </message>
        <message>
            <source>&amp;Folder</source>
            <translation>文件夹(&amp;F)</translation>
        </message>
        <message>
            <source>from</source>
            <translation>从</translation>
        </message>
        <message>
            <source>to</source>
            <translation>到</translation>
        </message>
        <message>
            <source>From</source>
            <translation>从</translation>
        </message>
        <message>
            <source>To</source>
            <translation>到</translation>
        </message>
        <message>
            <source>Time</source>
            <translation>时间</translation>
        </message>
        <message>
            <source>all; or numbers, as 1, 2, 7</source>
            <translation>全部，或编号，例如 1, 2, 7</translation>
        </message>
        <message>
            <source>&amp;Cameras</source>
            <translation>摄像机(&amp;C)</translation>
        </message>
        <message>
            <source>all; or as Intrusion, Line crossing</source>
            <translation>全部，或例如 Intrusion, Line crossing</translation>
        </message>
        <message>
            <source>&amp;Kinds of events</source>
            <translation>事件类型(&amp;K)</translation>
        </message>
        <message>
            <source>any</source>
            <translation>任意</translation>
        </message>
        <message>
            <source>%1 and above</source>
            <translation>%1 级及以上</translation>
        </message>
        <message>
            <source>&amp;Level</source>
            <translation>级别(&amp;L)</translation>
        </message>
        <message>
            <source>part of a text, a person or a plate</source>
            <translation>文字、人员或车牌的一部分</translation>
        </message>
        <message>
            <source>Te&amp;xt</source>
            <translation>文字(&amp;X)</translation>
        </message>
        <message>
            <source>Excel workbook</source>
            <translation>Excel 工作簿</translation>
        </message>
        <message>
            <source>CSV</source>
            <translation>CSV</translation>
        </message>
        <message>
            <source>PDF</source>
            <translation>PDF</translation>
        </message>
        <message>
            <source>Text</source>
            <translation>文本</translation>
        </message>
        <message>
            <source>For&amp;mat</source>
            <translation>格式(&amp;M)</translation>
        </message>
        <message>
            <source>none</source>
            <translation>无</translation>
        </message>
        <message>
            <source>linked</source>
            <translation>链接</translation>
        </message>
        <message>
            <source>embedded</source>
            <translation>嵌入</translation>
        </message>
        <message>
            <source>&amp;Pictures</source>
            <translation>图片(&amp;P)</translation>
        </message>
        <message>
            <source>&amp;videos of these cameras in this time</source>
            <translation>以上摄像机在该时间段的视频(&amp;V)</translation>
        </message>
        <message>
            <source>Videos</source>
            <translation>视频</translation>
        </message>
        <message>
            <source>pac&amp;k everything into an archive</source>
            <translation>全部打包成压缩文件(&amp;K)</translation>
        </message>
        <message>
            <source>Archive</source>
            <translation>压缩</translation>
        </message>
        <message>
            <source>Pass&amp;word</source>
            <translation>密码(&amp;W)</translation>
        </message>
        <message>
            <source>The re&amp;quest that this makes</source>
            <translation>生成的请求(&amp;Q)</translation>
        </message>
        <message>
            <source>The request that this makes</source>
            <translation>生成的请求</translation>
        </message>
        <message>
            <source>&amp;Save request…</source>
            <translation>保存请求(&amp;S)…</translation>
        </message>
        <message>
            <source>R&amp;un</source>
            <translation>运行(&amp;U)</translation>
        </message>
        <message>
            <source>Cl&amp;ose</source>
            <translation>关闭(&amp;O)</translation>
        </message>
        <message>
            <source>The client knows no station; start it with --station</source>
            <translation>客户端没有服务站，请用 --station 启动</translation>
        </message>
        <message>
            <source>The request fits its schema.</source>
            <translation>请求符合其格式。</translation>
        </message>
        <message>
            <source>Look at the fields marked on the left.</source>
            <translation>请查看左侧标出的字段。</translation>
        </message>
        <message>
            <source>Asking the station…</source>
            <translation>正在询问服务站…</translation>
        </message>
        <message>
            <source>The station answers.</source>
            <translation>服务站有应答。</translation>
        </message>
        <message>
            <source>The station does not answer: %1</source>
            <translation>服务站无应答：%1</translation>
        </message>
        <message>
            <source>Folder for the export</source>
            <translation>导出文件夹</translation>
        </message>
        <message>
            <source>Saved. Run it with: fetchyard run %1</source>
            <translation>已保存。运行命令：fetchyard run %1</translation>
        </message>
        <message>
            <source>%1 can't be written: %2</source>
            <translation>无法写入 %1：%2</translation>
        </message>
        <message>
            <source>Save request</source>
            <translation>保存请求</translation>
        </message>
        <message>
            <source>Requests (*.json);;All files (*)</source>
            <translation>请求 (*.json);;所有文件 (*)</translation>
        </message>
        <message>
            <source>export</source>
            <translation>导出</translation>
        </message>
        <message>
            <source>the new export</source>
            <translation>新的导出</translation>
        </message>
    </context>
    <context>
        <name>FetchyardClient::FailedFilesDialog</name>
        <message>
            <source>Failed files</source>
            <translation>失败的文件</translation>
        </message>
        <message>
            <source>Task</source>
            <translation>任务</translation>
        </message>
        <message>
            <source>File</source>
            <translation>文件</translation>
        </message>
        <message>
            <source>What went wrong</source>
            <translation>错误信息</translation>
        </message>
        <message>
            <source>&amp;Copy all</source>
            <translation>全部复制(&amp;C)</translation>
        </message>
    </context>
    <context>
        <name>FetchyardClient::MainWindow</name>
        <message>
            <source>Download centre</source>
            <translation>下载中心</translation>
        </message>
        <message>
            <source>&amp;New export…</source>
            <translation>新建导出(&amp;N)…</translation>
        </message>
        <message>
            <source>Put an export together and run it</source>
            <translation>新建一个导出并运行</translation>
        </message>
        <message>
            <source>&amp;Run request files…</source>
            <translation>运行请求文件(&amp;R)…</translation>
        </message>
        <message>
            <source>Run requests that are in files</source>
            <translation>运行文件中的请求</translation>
        </message>
        <message>
            <source>&amp;Go on with what was left unfinished</source>
            <translation>继续未完成的任务(&amp;G)</translation>
        </message>
        <message>
            <source>Ctrl+G</source>
            <translation>Ctrl+G</translation>
        </message>
        <message>
            <source>Go on with everything that an earlier run left unfinished</source>
            <translation>继续先前运行留下的所有未完成任务</translation>
        </message>
        <message>
            <source>&amp;Clear finished</source>
            <translation>清除已完成(&amp;C)</translation>
        </message>
        <message>
            <source>Ctrl+Shift+Del</source>
            <translation>Ctrl+Shift+Del</translation>
        </message>
        <message>
            <source>Take all that finished or was deleted out of the list; files stay</source>
            <translation>从列表中移除所有已完成或已删除的任务，文件保留</translation>
        </message>
        <message>
            <source>&amp;Undo</source>
            <translation>撤销(&amp;U)</translation>
        </message>
        <message>
            <source>Put back what was removed last</source>
            <translation>恢复最近移除的任务</translation>
        </message>
        <message>
            <source>&amp;Quit</source>
            <translation>退出(&amp;Q)</translation>
        </message>
        <message>
            <source>Ctrl+Q</source>
            <translation>Ctrl+Q</translation>
        </message>
        <message>
            <source>&amp;Stop</source>
            <translation>停止(&amp;S)</translation>
        </message>
        <message>
            <source>Ctrl+.</source>
            <translation>Ctrl+.</translation>
        </message>
        <message>
            <source>Stop the selected tasks; what they have stays</source>
            <translation>停止所选任务，已有内容保留</translation>
        </message>
        <message>
            <source>Start &amp;again</source>
            <translation>重新开始(&amp;A)</translation>
        </message>
        <message>
            <source>Ctrl+R</source>
            <translation>Ctrl+R</translation>
        </message>
        <message>
            <source>Run the selected tasks once more</source>
            <translation>再次运行所选任务</translation>
        </message>
        <message>
            <source>&amp;Remove from list</source>
            <translation>从列表移除(&amp;R)</translation>
        </message>
        <message>
            <source>Take the selected tasks out of the list; files stay</source>
            <translation>从列表中移除所选任务，文件保留</translation>
        </message>
        <message>
            <source>&amp;Delete with files…</source>
            <translation>连同文件删除(&amp;D)…</translation>
        </message>
        <message>
            <source>Shift+Del</source>
            <translation>Shift+Del</translation>
        </message>
        <message>
            <source>Open &amp;folder</source>
            <translation>打开文件夹(&amp;F)</translation>
        </message>
        <message>
            <source>Ctrl+Return</source>
            <translation>Ctrl+Return</translation>
        </message>
        <message>
            <source>Open the folder of the selected tasks</source>
            <translation>打开所选任务的文件夹</translation>
        </message>
        <message>
            <source>Open re&amp;port</source>
            <translation>打开报表(&amp;P)</translation>
        </message>
        <message>
            <source>Ctrl+P</source>
            <translation>Ctrl+P</translation>
        </message>
        <message>
            <source>Open the report or the archive of the selected tasks</source>
            <translation>打开所选任务的报表或压缩文件</translation>
        </message>
        <message>
            <source>Show fai&amp;led files</source>
            <translation>显示失败的文件(&amp;L)</translation>
        </message>
        <message>
            <source>Ctrl+L</source>
            <translation>Ctrl+L</translation>
        </message>
        <message>
            <source>Show which files the selected tasks could not get, and why</source>
            <translation>显示所选任务未能获取的文件及原因</translation>
        </message>
        <message>
            <source>&amp;Copy error</source>
            <translation>复制错误(&amp;C)</translation>
        </message>
        <message>
            <source>Copy what went wrong with the selected tasks</source>
            <translation>复制所选任务的错误信息</translation>
        </message>
        <message>
            <source>&amp;File</source>
            <translation>文件(&amp;F)</translation>
        </message>
        <message>
            <source>&amp;Tasks</source>
            <translation>任务(&amp;T)</translation>
        </message>
        <message>
            <source>&amp;View</source>
            <translation>视图(&amp;V)</translation>
        </message>
        <message>
            <source>&amp;Find by name</source>
            <translation>按名称查找(&amp;F)</translation>
        </message>
        <message>
            <source>Colours of the &amp;desktop</source>
            <translation>跟随桌面颜色(&amp;D)</translation>
        </message>
        <message>
            <source>&amp;Light colours</source>
            <translation>浅色(&amp;L)</translation>
        </message>
        <message>
            <source>Dar&amp;k colours</source>
            <translation>深色(&amp;K)</translation>
        </message>
        <message>
            <source>Lan&amp;guage of the desktop</source>
            <translation>跟随桌面语言(&amp;G)</translation>
        </message>
        <message>
            <source>Search names</source>
            <translation>搜索名称</translation>
        </message>
        <message>
            <source>State of the tasks shown</source>
            <translation>显示的任务状态</translation>
        </message>
        <message>
            <source>All states</source>
            <translation>所有状态</translation>
        </message>
        <message>
            <source>Actions</source>
            <translation>操作</translation>
        </message>
        <message>
            <source>Go on with all</source>
            <translation>全部继续</translation>
        </message>
        <message>
            <source>Undo</source>
            <translation>撤销</translation>
        </message>
        <message>
            <source>Show the window</source>
            <translation>显示窗口</translation>
        </message>
        <message>
            <source>%1 %2</source>
            <comment>number, state</comment>
            <translation>%2 %1</translation>
        </message>
        <message>
            <source>%1 of %2 shown</source>
            <translation>显示 %1 / 共 %2</translation>
        </message>
        <message>
            <source>Reading the list…</source>
            <translation>正在读取列表…</translation>
        </message>
        <message>
            <source>No task fits the search and the state that are chosen.</source>
            <translation>没有符合搜索和状态的任务。</translation>
        </message>
        <message>
            <source>Nothing here yet.
Make a new export with %1, or drop request files on this window.</source>
            <translation>这里还没有任务。
按 %1 新建导出，或将请求文件拖到此窗口。</translation>
        </message>
        <message numerus="yes">
            <source>and %n more</source>
            <translation>
                <numerusform>还有 %n 项</numerusform>
            </translation>
        </message>
        <message numerus="yes">
            <source>%n task(s) of an earlier run were left unfinished.</source>
            <translation>
                <numerusform>先前的运行有 %n 个任务未完成。</numerusform>
            </translation>
        </message>
        <message numerus="yes">
            <source>%n task(s) removed from the list. Their files stay.</source>
            <translation>
                <numerusform>已从列表移除 %n 个任务，文件保留。</numerusform>
            </translation>
        </message>
        <message>
            <source>Run request files</source>
            <translation>运行请求文件</translation>
        </message>
        <message>
            <source>Requests (*.json);;All files (*)</source>
            <translation>请求 (*.json);;所有文件 (*)</translation>
        </message>
        <message>
            <source>%1 is not on this computer</source>
            <translation>%1 不在本机上</translation>
        </message>
        <message numerus="yes">
            <source>%n file(s) too many: only the first %1 are run</source>
            <translation>
                <numerusform>多出 %n 个文件：只运行前 %1 个</numerusform>
            </translation>
        </message>
        <message>
            <source>Delete with files</source>
            <translation>连同文件删除</translation>
        </message>
        <message numerus="yes">
            <source>Delete %n task(s) and the folders of their exports?</source>
            <translation>
                <numerusform>删除 %n 个任务及其导出文件夹？</numerusform>
            </translation>
        </message>
        <message>
            <source>This can't be undone.</source>
            <translation>此操作无法撤销。</translation>
        </message>
        <message>
            <source>&amp;Delete</source>
            <translation>删除(&amp;D)</translation>
        </message>
        <message>
            <source>The desktop has no program to open %1</source>
            <translation>桌面没有可打开 %1 的程序</translation>
        </message>
        <message numerus="yes">
            <source>Copied what went wrong with %n task(s)</source>
            <translation>
                <numerusform>已复制 %n 个任务的错误信息</numerusform>
            </translation>
        </message>
        <message>
            <source>Quit</source>
            <translation>退出</translation>
        </message>
        <message numerus="yes">
            <source>%n task(s) are on their way. Stop them and quit?</source>
            <translation>
                <numerusform>有 %n 个任务正在进行。停止它们并退出？</numerusform>
            </translation>
        </message>
        <message>
            <source>What they have stays, and exports can be started again later.</source>
            <translation>已有内容保留，导出可以稍后重新开始。</translation>
        </message>
        <message>
            <source>&amp;Stop and quit</source>
            <translation>停止并退出(&amp;S)</translation>
        </message>
        <message>
            <source>Stopping…</source>
            <translation>正在停止…</translation>
        </message>
        <message>
            <source>Delete the selected unfinished tasks and the folders of their exports</source>
            <translation>删除所选未完成的任务及其导出文件夹</translation>
        </message>
    </context>
    <context>
        <name>FetchyardClient::Notices</name>
        <message>
            <source>Fetchyard: nothing runs</source>
            <translation>Fetchyard：没有任务在运行</translation>
        </message>
        <message numerus="yes">
            <source>Fetchyard: %n task(s) run</source>
            <translation>
                <numerusform>Fetchyard：%n 个任务在运行</numerusform>
            </translation>
        </message>
        <message numerus="yes">
            <source>%n task(s) ended</source>
            <translation>
                <numerusform>%n 个任务已结束</numerusform>
            </translation>
        </message>
        <message numerus="yes">
            <source>%n task(s) ended, %1 of them failed</source>
            <translation>
                <numerusform>%n 个任务已结束，其中 %1 个失败</numerusform>
            </translation>
        </message>
        <message numerus="yes">
            <source>and %n more</source>
            <translation>
                <numerusform>还有 %n 项</numerusform>
            </translation>
        </message>
    </context>
    <context>
        <name>FetchyardClient::TaskBoard</name>
        <message>
            <source>%1 is on its way; stop it first</source>
            <translation>%1 正在进行，请先停止</translation>
        </message>
        <message>
            <source>%1 waits until another export of its archive's name has ended</source>
            <translation>%1 正在等待另一个同名压缩文件的导出结束</translation>
        </message>
    </context>
    <context>
        <name>FetchyardClient::TaskModel</name>
        <message>
            <source>Name</source>
            <translation>名称</translation>
        </message>
        <message>
            <source>Kind</source>
            <translation>类型</translation>
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
            <source>Started</source>
            <translation>开始时间</translation>
        </message>
        <message>
            <source>What went wrong</source>
            <translation>错误信息</translation>
        </message>
    </context>
    <context>
        <name>FetchyardClient::TaskTable</name>
        <message>
            <source>Tasks</source>
            <translation>任务</translation>
        </message>
    </context>
    <context>
        <name>Tasks</name>
        <message>
            <source>waiting</source>
            <translation>等待中</translation>
        </message>
        <message>
            <source>running</source>
            <translation>运行中</translation>
        </message>
        <message>
            <source>finished</source>
            <translation>已完成</translation>
        </message>
        <message>
            <source>failed</source>
            <translation>失败</translation>
        </message>
        <message>
            <source>stopped</source>
            <translation>已停止</translation>
        </message>
        <message>
            <source>interrupted</source>
            <translation>已中断</translation>
        </message>
        <message>
            <source>deleted</source>
            <translation>已删除</translation>
        </message>
        <message>
            <source>(no name)</source>
            <translation>（无名称）</translation>
        </message>
        <message>
            <source>report</source>
            <translation>报表</translation>
        </message>
        <message>
            <source>person pictures</source>
            <translation>人员图片</translation>
        </message>
        <message>
            <source>conversion</source>
            <translation>转换</translation>
        </message>
        <message>
            <source>download</source>
            <translation>下载</translation>
        </message>
        <message>
            <source>other</source>
            <translation>其他</translation>
        </message>
        <message>
            <source>converting</source>
            <translation>转换中</translation>
        </message>
        <message numerus="yes">
            <source>%n page(s)</source>
            <translation>
                <numerusform>%n 页</numerusform>
            </translation>
        </message>
        <message numerus="yes">
            <source>%n picture(s)</source>
            <translation>
                <numerusform>%n 张图片</numerusform>
            </translation>
        </message>
        <message>
            <source>left unfinished; a download has no record to go on from</source>
            <translation>未完成；下载没有可供继续的记录</translation>
        </message>
        <message>
            <source>left unfinished; can be gone on with</source>
            <translation>未完成；可以继续</translation>
        </message>
        <message>
            <source>error %1 of module %2</source>
            <translation>模块 %2 的错误 %1</translation>
        </message>
        <message>
            <source>the log tells why</source>
            <translation>原因见日志</translation>
        </message>
    </context>
</TS>
