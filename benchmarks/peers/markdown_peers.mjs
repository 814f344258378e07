// Renders replies with markdown-it and marked, and prints the processor time of each in
// milliseconds for a megabyte: of the first pass, and the median of many after the compiler has
// warmed up.

import { readFileSync } from "node:fs";
import MarkdownIt from "markdown-it";
import { marked } from "marked";

const replies = JSON.parse(readFileSync(process.argv[2], "utf8"));
const megabytes = replies.reduce((sum, text) => sum + Buffer.byteLength(text), 0) / 1e6;

function median(values) {
    return values.sort((a, b) => a - b)[Math.floor(values.length / 2)];
}

function measure(render) {
    const times = [];
    for (let pass = 0; pass < 25; ++pass) {
        const before = process.cpuUsage();
        for (const text of replies) render(text);
        const used = process.cpuUsage(before);
        times.push((used.user + used.system) / 1000 / megabytes);
    }
    return { first: times[0], warm: median(times.slice(5)) };
}

const markdownIt = new MarkdownIt({ linkify: true });
console.log(JSON.stringify({
    "markdown-it": measure((text) => markdownIt.render(text)),
    "marked": measure((text) => marked.parse(text)),
}));
