// The chrono-node side of compare_chrono.sh: reads the same JSON Lines requests as
// `tarrow parse --jsonl` ({"text", "now"}) and answers each as one JSON line, with chrono's
// English parser. Also writes the requests: `node chrono_lines.cjs --generate N`.
'use strict';

const subjects = ['dentist', 'team standup', 'call mom', 'submit tax return', 'flight to Lisbon',
    "Anna's birthday party", 'quarterly review with finance', 'renew passport',
    "dinner reservation at Luigi's", 'room 101 cleanup', 'version 2.5 release'];
const phrases = ['tomorrow at 3pm', 'on June 12th', 'next Friday', 'in 3 days', 'at 9:00',
    '2 weeks ago', 'Jun. 3, 2027', 'on Monday at 10am', 'the day after tomorrow', 'in 2 hours'];

function generate(count) {
    // A fixed mix, as bench_parse makes it: about half with a date phrase, before or after.
    let seed = 20260603;
    const next = (bound) => {
        seed = (seed * 1103515245 + 12345) % 2147483648;
        return seed % bound;
    };
    const lines = [];
    for (let i = 0; i < count; ++i) {
        let text = subjects[next(subjects.length)];
        if (next(100) < 55) {
            const phrase = phrases[next(phrases.length)];
            text = next(4) === 0 ? `${phrase} ${text}` : `${text} ${phrase}`;
        }
        lines.push(JSON.stringify({text, now: '2026-06-03T10:00:00Z', tz: 'UTC'}));
    }
    process.stdout.write(lines.join('\n') + '\n');
}

function answer(chrono) {
    const input = require('fs').readFileSync(0, 'utf8');
    const out = [];
    for (const line of input.split('\n')) {
        if (!line.trim())
            continue;
        let request;
        try {
            request = JSON.parse(line);
        } catch (e) {
            out.push(JSON.stringify({error: `not JSON: ${e.message}`}));
            continue;
        }
        const results = chrono.en.parse(request.text, new Date(request.now));
        if (results.length === 0) {
            out.push('{"match":null}');
            continue;
        }
        const found = results[0];
        const cleaned = (request.text.slice(0, found.index) +
                         request.text.slice(found.index + found.text.length))
                            .replace(/\s+/g, ' ').trim();
        out.push(JSON.stringify({date: found.start.date().toISOString(),
                                 includeTime: found.start.isCertain('hour'),
                                 cleanedTitle: cleaned}));
    }
    process.stdout.write(out.join('\n') + '\n');
}

if (process.argv[2] === '--generate')
    generate(Number(process.argv[3] || 100000));
else
    answer(require(process.env.CHRONO_NODE || 'chrono-node'));
